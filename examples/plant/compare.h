#pragma once

#include <kaxml/kaxml.h>

#include <string>
#include <vector>

namespace plant {

/// One statement about a model: "Plant/class Pump/property RatedFlow/type" is "double".
struct Fact {
    std::wstring path;
    std::wstring value;
};

/// All that can be said about something, in its order.
using Facts = std::vector<Fact>;

/// Everything a schema file carries: every text, flag, class, property, end, key and custom
/// attribute value, in order, and the same of the referenced schemas. Left out are the search path
/// and the client's notes (extended info, attribute numbers, default values), which no file holds.
Facts FactsOf(KAXML::CKaSchema& schema);

/// An instance's class, id and values; of a relationship also its ends.
Facts FactsOf(const KAXML::CKaInstance& instance);

/// Where two things first differ, in words a person can act on; empty when they are equal.
std::wstring FirstDifference(const Facts& expected, const Facts& found);

} // namespace plant
