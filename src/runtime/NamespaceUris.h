#pragma once

/// The namespace URIs of the format and of its predecessor.

#include <string_view>

namespace zorvex_api::uris
{

#define ZORVEX_HOME u"http://www.zorvex.org"
#define ZORVEX_LEGACY_HOME u"http://www.orbformat.org"

inline constexpr std::u16string_view kMain = ZORVEX_HOME u"/Schemas/ZORVEXSchema";
inline constexpr std::u16string_view kClassification =
    ZORVEX_HOME u"/Schemas/ZORVEXClassificationSchema";
inline constexpr std::u16string_view kCharacteristic =
    ZORVEX_HOME u"/Schemas/ZORVEXCharacteristicSchema";
inline constexpr std::u16string_view kDebug = ZORVEX_HOME u"/Schemas/ZORVEXDebugSchema";
inline constexpr std::u16string_view kGenerator = ZORVEX_HOME u"/tools/CodeGenerator";

inline constexpr std::u16string_view kXmlSchema = u"http://www.w3.org/2001/XMLSchema";
inline constexpr std::u16string_view kXmlSchemaInstance =
    u"http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::u16string_view kXml = u"http://www.w3.org/XML/1998/namespace";

/// A namespace of the predecessor format, read as the main namespace.
struct LegacyNamespace
{
    std::u16string_view prefix;
    std::u16string_view uri;
};

/// In the order of registration.
inline constexpr LegacyNamespace kLegacy[] = {
    {u"", ZORVEX_LEGACY_HOME u"/Schemas/v1_0/oRBSchema"},
    {u"", ZORVEX_LEGACY_HOME u"/Schemas/v1_1/oRBSchema"},
    {u"", ZORVEX_LEGACY_HOME u"/Schemas/V1_0/oRBSchema"},
    {u"", ZORVEX_LEGACY_HOME u"/Schemas/V1_1/oRBSchema"},
    {u"", ZORVEX_LEGACY_HOME u"/Schemas/v2_0/oRBSchema"},
    {u"MP", ZORVEX_LEGACY_HOME u"/Schemas/v2_0/oRB-MassProperty"},
    {u"RQ", ZORVEX_LEGACY_HOME u"/Schemas/v2_0/oRB-Protocol"},
    {u"MON", ZORVEX_LEGACY_HOME u"/Schemas/v2_0/oRB-Monikers"},
};

#undef ZORVEX_HOME
#undef ZORVEX_LEGACY_HOME

}  // namespace zorvex_api::uris
