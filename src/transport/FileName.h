#pragma once

#include <vector>

#include "runtime/Text.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;
class PluginDescriptor;
class Pointer;

namespace internal
{

/// Divides a "FILE_EXTENSIONS" property at ";", ":", "," and blanks; no empty items.
std::vector<TextView> SplitExtensions(TextView extensions);
/// The "FILE_EXTENSIONS" property of a plug-in, empty when it isn't set.
String GetFileExtensions(const PluginDescriptor* descriptor);
/// The first of the adapter's extensions, empty without any.
String GetFirstExtension(Adapter* adapter);

/// Makes a file name, without folder, fit for a file that `adapter` is to write: characters that
/// file systems refuse become "_", and a name without extension gets the adapter's first one.
String FitFileName(const String& name, Adapter* adapter);

/// The format of the last registered adapter that lists the pointer's extension, in any case;
/// empty when none does.
String FindFormatByExtension(const Pointer& pointer);
/// The same, and asks the plug-in callback once when there is none.
String FindOrAskFormatByExtension(const Pointer& pointer);

/// Whether an adapter below `adapter` has the format "XPK".
bool StandsInPackage(const Adapter* adapter);

}  // namespace internal
}  // namespace zorvex_api
