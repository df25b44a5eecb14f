#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace bench {

/// The same numbers and texts on every system: the standard's distributions differ between
/// libraries, its engines do not.
class Random {
  public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(m_engine() % bound); }

    /// A decimal number with three places.
    std::string Number() { return std::to_string(Below(10000)) + '.' + std::to_string(100 + Below(900)); }

    /// Words with blanks between them; now and then a reference or a character outside ASCII.
    std::string Words(std::size_t count) {
        static constexpr const char* kWords[] = {"pump",  "feed",  "water", "cooling", "spare",    "steam",
                                                 "inlet", "valve", "tank",  "line",    "pressure", "return"};
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += i == 0 ? "" : " ";
            text += Below(50) == 0 ? "hot &amp; gl\xC3\xBChend" : kWords[Below(std::size(kWords))];
        }
        return text;
    }

  private:
    std::mt19937_64 m_engine;
};

} // namespace bench
