#include "generate.h"

#include "element_writer.h"
#include "random.h"

namespace bench {
namespace {

constexpr std::uint64_t kSeed = 20240527;

std::string Numbered(const char* stem, std::size_t number) { return stem + std::to_string(number); }

// Writes instances of one kind, one at a call.
class InstanceWriter {
  public:
    InstanceWriter(ElementWriter& xml, const Amount& amount) : m_xml(xml), m_amount(amount), m_random(kSeed) {}

    void Write(Kind kind);

  private:
    void Plant();
    void Item();
    void Relationship();
    void Wide();
    void Arrays();
    void Long();
    void Tiny();
    void OpenInstance(const std::string& className, const std::string& moreAttributes = {});
    void Numbers(const char* name, std::size_t count);
    void Samples(std::size_t count);

    ElementWriter& m_xml;
    const Amount& m_amount;
    Random m_random;
    std::size_t m_count = 0;
};

void InstanceWriter::Write(Kind kind) {
    ++m_count;
    switch (kind) {
    case Kind::plant:
    case Kind::plantCompact:
        return Plant();
    case Kind::wide:
        return Wide();
    case Kind::arrays:
        return Arrays();
    case Kind::longValues:
        return Long();
    case Kind::many:
        return Tiny();
    }
}

void InstanceWriter::OpenInstance(const std::string& className, const std::string& moreAttributes) {
    m_xml.Open(className, Numbered("id=\"i", m_count) + '"' + moreAttributes);
}

void InstanceWriter::Plant() {
    if (m_count % 10 == 0)
        Relationship();
    else
        Item();
}

void InstanceWriter::Item() {
    OpenInstance(Numbered("Equipment", m_random.Below(30)));
    m_xml.Leaf("Tag", Numbered("P-", m_count));
    m_xml.Leaf("Service", m_random.Words(3));
    m_xml.Leaf("Manufacturer", m_random.Words(2));
    m_xml.Leaf("AssetNumber", std::to_string(400000 + m_random.Below(100000)));
    m_xml.Leaf("DryMass", m_random.Number());
    m_xml.Leaf("DesignPressure", m_random.Number());
    m_xml.Leaf("Commissioned", "2007-05-27T00:00:00");
    m_xml.Leaf("InService", m_random.Below(2) == 0 ? "True" : "False");
    Numbers("Readings", 5);
    m_xml.Open("Location");
    m_xml.Leaf("Area", Numbered("A-", m_random.Below(40)));
    m_xml.Leaf("Elevation", m_random.Number());
    m_xml.Close();
    m_xml.Close();
}

void InstanceWriter::Relationship() {
    OpenInstance(Numbered("Feeds", m_random.Below(4)), Numbered(" sourceInstanceID=\"i", m_count - 2) +
                                                           Numbered("\" targetInstanceID=\"i", m_count - 1) + '"');
    m_xml.Leaf("Medium", m_random.Words(1));
    m_xml.Leaf("Flow", m_random.Number());
    m_xml.Close();
}

void InstanceWriter::Wide() {
    OpenInstance("Wide");
    for (std::size_t i = 0; i < m_amount.valuesPerWide; ++i)
        m_xml.Leaf(Numbered("Characteristic", i), i % 3 == 0 ? m_random.Words(2) : m_random.Number());
    m_xml.Close();
}

void InstanceWriter::Numbers(const char* name, std::size_t count) {
    m_xml.Open(name);
    for (std::size_t i = 0; i < count; ++i)
        m_xml.Leaf("double", m_random.Number());
    m_xml.Close();
}

void InstanceWriter::Samples(std::size_t count) {
    m_xml.Open("Samples");
    for (std::size_t i = 0; i < count; ++i) {
        m_xml.Open("Sample");
        m_xml.Leaf("Point", Numbered("M", i));
        m_xml.Leaf("Thickness", m_random.Number());
        m_xml.Close();
    }
    m_xml.Close();
}

void InstanceWriter::Arrays() {
    OpenInstance("Series");
    Numbers("Numbers", m_amount.length);
    Samples(m_amount.length / 10);
    m_xml.Close();
}

void InstanceWriter::Long() {
    OpenInstance("Document");
    std::string text = m_random.Words(12);
    while (text.size() < m_amount.length)
        text += ".\n" + m_random.Words(12);
    m_xml.Leaf("Content", text);
    m_xml.Close();
}

void InstanceWriter::Tiny() {
    OpenInstance("T");
    m_xml.Leaf("V", std::to_string(m_random.Below(100)));
    m_xml.Close();
}

} // namespace

void WriteInstanceDocument(const std::filesystem::path& file, Kind kind, const Amount& amount) {
    ElementWriter xml(file, kind == Kind::plant);
    xml.Open("ka:KaInstanceXML", "xmlns:ka=\"http://corvane.example/schemas/Corvane.KAXML.2.0\" xmlns=\"Bench.01.00\"");
    InstanceWriter instances(xml, amount);
    while (xml.Size() < amount.bytes)
        instances.Write(kind);
    xml.Close();
    xml.Finish();
}

} // namespace bench
