#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaxml/core/errors.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <typeinfo>

namespace KAXML {

namespace {

template <std::size_t kCount> void CopyPiece(const wchar_t* from, wchar_t* to) noexcept {
    std::memcpy(to, from, kCount * sizeof(wchar_t));
}

// Most names and texts are so short that calling memcpy takes longer than copying. The two halves of a text
// may overlap, so that texts of many lengths take the same way.
inline wchar_t* Copy(std::wstring_view text, wchar_t* to) noexcept {
    const wchar_t* const from = text.data();
    const std::size_t size = text.size();
    if (size >= 8) {
        if (size > 32) {
            std::memcpy(to, from, size * sizeof(wchar_t));
        } else if (size > 16) {
            CopyPiece<16>(from, to);
            CopyPiece<16>(from + size - 16, to + size - 16);
        } else {
            CopyPiece<8>(from, to);
            CopyPiece<8>(from + size - 8, to + size - 8);
        }
    } else if (size >= 4) {
        CopyPiece<4>(from, to);
        CopyPiece<4>(from + size - 4, to + size - 4);
    } else {
        for (std::size_t i = 0; i < size; ++i)
            to[i] = from[i];
    }
    return to + size;
}

// A string that collects many instances grows by doubling, not with every one of them.
void MakeRoom(std::wstring& output) {
    constexpr std::size_t kSpareCapacity = 1024;
    if (output.capacity() - output.size() < kSpareCapacity)
        output.reserve(std::max(2 * output.capacity(), kSpareCapacity));
}

} // namespace

// Writes the text of an instance at the end of the output. The output grows ahead of what is written, once
// for many pieces, and is cut to what was written in the end: twice as fast as appending each piece.
class InstanceText {
  public:
    explicit InstanceText(std::wstring& output) noexcept : m_output(output) { Start(); }
    InstanceText(const InstanceText&) = delete;
    InstanceText& operator=(const InstanceText&) = delete;
    ~InstanceText() { Cut(); }

    void AddInstance(const CKaInstance& instance, std::wstring_view attributes) {
        AddInstanceStart(instance.m_typeName, instance.m_instanceID, attributes);
        AddValues(instance);
        AddEndTag(instance.m_typeName);
    }

    void AddValues(const CKaInstance& instance) {
        for (const auto& value : instance.m_values)
            AddElement(value->m_propertyName, value.get());
    }

    void AddMembers(const KaArrayValue& array) {
        const std::wstring& name = array.GetProperty()->TypeName();
        for (const auto& member : array.m_members)
            AddElement(name, member.get());
    }

    void AddStruct(const KaStructValue& structure) {
        if (!structure.m_pInstance)
            throw KAXMLLogicError(L"Can't serialize a NULL struct");
        AddValues(*structure.m_pInstance);
    }

    // A member of an array may be null.
    void AddElement(std::wstring_view name, const KaValueBase* value) {
        if (value != nullptr && value->m_isPrimitive && typeid(*value) == typeid(CKaValue)) {
            const bool isNull = (value->m_status & KaValueBase::kNullStatus) != 0;
            AddText(name, isNull ? std::wstring_view() : static_cast<const CKaValue*>(value)->m_value);
            return;
        }
        AddStartTag(name);
        if (value != nullptr)
            AddContent(*value);
        AddEndTag(name);
    }

    void AddStartTag(std::wstring_view name) {
        MakeRoom(name.size() + 2);
        m_end = WriteStartTag(name, m_end);
    }

    void AddEndTag(std::wstring_view name) {
        MakeRoom(name.size() + 3);
        m_end = WriteEndTag(name, m_end);
    }

  private:
    void Start() noexcept {
        m_end = m_output.data() + m_output.size();
        m_limit = m_end;
    }

    void Cut() noexcept { m_output.resize(Size()); }

    std::size_t Size() const noexcept { return static_cast<std::size_t>(m_end - m_output.data()); }

    void MakeRoom(std::size_t size) {
        if (size > static_cast<std::size_t>(m_limit - m_end))
            Grow(size);
    }

    void Grow(std::size_t size);

    static wchar_t* WriteStartTag(std::wstring_view name, wchar_t* end) noexcept {
        *end++ = L'<';
        end = Copy(name, end);
        *end++ = L'>';
        return end;
    }

    static wchar_t* WriteEndTag(std::wstring_view name, wchar_t* end) noexcept {
        *end++ = L'<';
        *end++ = L'/';
        end = Copy(name, end);
        *end++ = L'>';
        return end;
    }

    void AddInstanceStart(std::wstring_view typeName, std::wstring_view id, std::wstring_view attributes) {
        constexpr std::wstring_view beforeId = L" instanceid='";
        constexpr std::wstring_view behindId = L"' ";
        MakeRoom(typeName.size() + beforeId.size() + id.size() + behindId.size() + attributes.size() + 3);
        *m_end++ = L'<';
        m_end = Copy(typeName, m_end);
        if (!id.empty())
            m_end = Copy(behindId, Copy(id, Copy(beforeId, m_end)));
        if (!attributes.empty()) {
            m_end = Copy(attributes, m_end);
            *m_end++ = L' ';
        }
        *m_end++ = L'>';
    }

    void AddText(std::wstring_view name, std::wstring_view text) {
        MakeRoom(2 * name.size() + text.size() + 5);
        m_end = WriteEndTag(name, Copy(text, WriteStartTag(name, m_end)));
    }

    void AddContent(const KaValueBase& value) {
        if (typeid(value) == typeid(KaArrayValue)) {
            AddMembers(static_cast<const KaArrayValue&>(value));
        } else if (typeid(value) == typeid(KaStructValue)) {
            AddStruct(static_cast<const KaStructValue&>(value));
        } else {
            AddOther(value);
        }
    }

    // A value of a class of the client's: it appends to what is written so far.
    void AddOther(const KaValueBase& value) {
        Cut();
        try {
            value.AppendValueToString(m_output);
        } catch (...) {
            Start();
            throw;
        }
        Start();
    }

    std::wstring& m_output;
    wchar_t* m_end;   // of what is written
    wchar_t* m_limit; // of the output
};

// Out of the way of the many calls that have their room.
void InstanceText::Grow(std::size_t size) {
    constexpr std::size_t kStep = 256;
    const std::size_t written = Size();
    m_output.resize(written + std::max(size, kStep));
    m_end = m_output.data() + written;
    m_limit = m_output.data() + m_output.size();
}

void CKaInstance::AppendAsXml(std::wstring& output, const std::wstring& attributes) const {
    MakeRoom(output);
    InstanceText text(output);
    text.AddInstance(*this, attributes);
}

void CKaInstance::AppendValueToString(std::wstring& output) const {
    InstanceText text(output);
    text.AddValues(*this);
}

void KaValueBase::AppendAsXml(std::wstring& output) const {
    InstanceText text(output);
    text.AddElement(m_propertyName, this);
}

void CKaValue::AppendValueToString(std::wstring& output) const {
    if (!IsNull())
        output += m_value;
}

void KaArrayValue::AppendValueToString(std::wstring& output) const {
    InstanceText text(output);
    text.AddMembers(*this);
}

void KaStructValue::AppendValueToString(std::wstring& output) const {
    InstanceText text(output);
    text.AddStruct(*this);
}

} // namespace KAXML
