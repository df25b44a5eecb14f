#include <kaxml/kaxml.h>

// Nothing else is included before or after: what this file uses, the public header brings along.
#include <kaxml/kaxml.h>

static_assert(__cplusplus / 100 % 100 == EXPECTED_STANDARD, "compiled as another language version");
static_assert(KAXML_VERSION_MAJOR == EXPECTED_VERSION_MAJOR, "the header and the build disagree");
static_assert(KAXML_VERSION_MINOR == EXPECTED_VERSION_MINOR, "the header and the build disagree");
static_assert(KAXML_VERSION_PATCH == EXPECTED_VERSION_PATCH, "the header and the build disagree");

std::wstring DescribeFailure(void (*operation)()) {
    try {
        operation();
    } catch (const KAXML::_com_error& error) {
        return error.Description();
    }
    return {};
}
