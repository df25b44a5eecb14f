#pragma once

/// @file
/// KAXML: schemas of engineering data and instances of them, in memory and as XML. This is the one
/// header a client includes.
///
/// @code
/// #include <kaxml/kaxml.h>
///
/// int main() {
///     KAXML::CKaSchema schema(L"Plant", L"pl", L"A process plant");
///     KAXML::CKaClass* pump = schema.CreateKaClass(L"Pump", L"Moves liquids", KAXML::KA_DOMAIN_CLASS);
///     pump->AddKaProperty(L"Power", L"double", L"In kW");
///     schema.SetVersionString(L"1.0");
///     schema.WriteXML(schema.OfficialFilename().c_str());
/// }
/// @endcode
///
/// Text is wide. Failures are exceptions (see errors.h). Nothing depends on the process's locale,
/// and no setting of the process is changed; a call leaves errno as it was unless memory runs out.
///
/// Threads: a schema, with everything in it and the instances and values made for it, is used by one
/// thread at a time; different threads may use different ones at once. Free functions and static
/// operations may be called on any thread. What all threads share, the logging callback and the pool
/// of recycled values, is guarded. The library reads environment variables, so no thread may set one
/// while another is inside.
///
/// A call that throws changes nothing unless its comment says what stays. Each that is not noexcept
/// may throw std::bad_alloc.

/// @namespace KAXML
/// Everything in the library.

#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/instance/value.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/common.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/relationship_constraint.h>
#include <kaxml/kaschemaxml/schema/relationship_ends.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/schema/schema_reference.h>
#include <kaxml/kaxml/core/describe.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/identifiers.h>
#include <kaxml/kaxml/core/logging.h>
#include <kaxml/kaxml/core/scoped_logging.h>
#include <kaxml/kaxml/core/text.h>
#include <kaxml/kaxml/core/version.h>
#include <kaxml/kaxml/reader/parse.h>
#include <kaxml/kaxml/reader/parse_callables.h>
#include <kaxml/kaxml/reader/schema_instance_factory.h>
#include <kaxml/kaxml/reader/xml_attributes.h>
#include <kaxml/platform/com_error.h>
