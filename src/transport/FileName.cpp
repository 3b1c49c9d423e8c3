#include "transport/FileName.h"

#include <algorithm>
#include <string>

#include "transport/PluginDescriptorImpl.h"
#include "transport/PluginRegistry.h"
#include "transport/PluginSlots.h"
#include "transport/PointerImpl.h"
#include "zorvex_api/Adapter.h"
#include "zorvex_api/Pointer.h"

namespace zorvex_api::internal
{

namespace
{

constexpr TextView kSeparators = u";:, ";
constexpr TextView kRefusedInNames = u"\\/:*?\"<>|";

bool Lists(TextView extensions, TextView lowered)
{
    const auto items = SplitExtensions(extensions);
    return std::any_of(items.begin(), items.end(),
                       [lowered](TextView item) { return EqualsIgnoringAsciiCase(item, lowered); });
}

}  // namespace

std::vector<TextView> SplitExtensions(TextView extensions)
{
    std::vector<TextView> items;
    std::size_t position = 0;
    while ((position = extensions.find_first_not_of(kSeparators, position)) != TextView::npos)
    {
        const std::size_t end =
            std::min(extensions.find_first_of(kSeparators, position), extensions.size());
        items.push_back(extensions.substr(position, end - position));
        position = end;
    }
    return items;
}

String GetFileExtensions(const PluginDescriptor* descriptor)
{
    return GetPluginProperty(descriptor, u"FILE_EXTENSIONS", u"");
}

String GetFirstExtension(Adapter* adapter)
{
    const String extensions = GetFileExtensions(adapter->GetPluginDescriptor());
    const auto items = SplitExtensions(View(extensions));
    return items.empty() ? String() : ToString(items.front());
}

String FitFileName(const String& name, Adapter* adapter)
{
    std::u16string fit(View(name));
    std::replace_if(
        fit.begin(), fit.end(),
        [](char16_t unit) { return kRefusedInNames.find(unit) != TextView::npos; }, u'_');
    const String plain = ToString(fit);
    if (fit.empty() || adapter->GetFormat().IsEmpty() != 0 || StandsInPackage(adapter))
    {
        return plain;
    }
    Pointer pointer;
    ParsePointer(pointer, plain, 1);
    const String first = GetFirstExtension(adapter);
    if (pointer.GetExtension().IsEmpty() == 0 || first.IsEmpty() != 0)
    {
        return plain;
    }
    return plain + u"." + first;
}

String FindFormatByExtension(const Pointer& pointer)
{
    const String extension = pointer.GetExtension().LowerCase();
    if (extension.IsEmpty() != 0)
    {
        return String();
    }
    PluginDescriptor::RegisterAll();
    const auto& descriptors = PluginRegistry::Get().Descriptors();
    for (auto it = descriptors.rbegin(); it != descriptors.rend(); ++it)
    {
        const PluginDescriptorImpl& impl = *(*it)->GetImplementation();
        if (impl.type == kAdapterPlugin && impl.instanceFunction != nullptr &&
            Lists(View(GetFileExtensions(*it)), View(extension)))
        {
            return (*it)->GetName();
        }
    }
    return String();
}

String FindOrAskFormatByExtension(const Pointer& pointer)
{
    String format = FindFormatByExtension(pointer);
    if (format.IsEmpty() != 0 &&
        PluginDescriptor::GetCallback(kAdapterPlugin, pointer.GetString()) != 0)
    {
        format = FindFormatByExtension(pointer);
    }
    return format;
}

bool StandsInPackage(const Adapter* adapter)
{
    for (const Adapter* below = adapter->GetPrevious(); below != nullptr;
         below = below->GetPrevious())
    {
        if (below->GetFormat() == u"XPK")
        {
            return true;
        }
    }
    return false;
}

}  // namespace zorvex_api::internal
