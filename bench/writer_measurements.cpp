#include "client.h"
#include "measurements.h"

#include <deque>

namespace bench {
namespace {

// The first instances of a document, kept together with the client that owns their classes.
class Kept {
  public:
    Kept(const InstanceInput& input, std::size_t count) : m_client(input.schema) {
        m_client.ParseFile(input.document, [&](const KAXML::CKaInstance& instance) {
            if (m_instances.size() < count)
                m_instances.push_back(instance);
        });
    }

    void AppendTo(std::wstring& output) const {
        for (const KAXML::CKaInstance& instance : m_instances)
            instance.AppendAsXml(output, L"");
    }

  private:
    Client m_client;
    std::deque<KAXML::CKaInstance> m_instances;
};

// The output has its room before the clock starts, and every iteration writes all instances into it.
template <typename Write> void TimeIntoWarmString(benchmark::State& state, const std::wstring& text, Write write) {
    std::wstring output = text;
    for (auto _ : state) {
        output.clear();
        write(output);
        benchmark::DoNotOptimize(output.data());
    }
}

void AddAppend(std::vector<Measurement>& list, Inputs& inputs, const std::string& name, std::size_t count) {
    const auto keep = [&inputs, count] {
        const Amount amount{count * 1000};
        return Kept(inputs.Special("append", Kind::plant, amount), count);
    };
    list.push_back({name + "/ours", Unit::seconds, [keep](benchmark::State& state) {
                        const Kept kept = keep();
                        std::wstring text;
                        kept.AppendTo(text);
                        TimeIntoWarmString(state, text, [&](std::wstring& output) { kept.AppendTo(output); });
                    }});
    list.push_back({name + "/copy", Unit::seconds, [keep](benchmark::State& state) {
                        std::wstring text;
                        keep().AppendTo(text);
                        TimeIntoWarmString(state, text, [&](std::wstring& output) { output.append(text); });
                    }});
}

} // namespace

void AddWriterMeasurements(std::vector<Measurement>& list, Inputs& inputs) {
    AddAppend(list, inputs, "append", inputs.Scaled(10'000));
    AddAppend(list, inputs, "append one", 1);
}

} // namespace bench
