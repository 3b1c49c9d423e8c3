#include "runtime/XmlCharacters.h"

namespace zorvex_api
{

Result CheckXmlCharacters(TextView text)
{
    for (size_t i = 0; i < text.size(); ++i)
    {
        const char16_t unit = text[i];
        if (unit < 32 && unit != u'\t' && unit != u'\n' && unit != u'\r')
        {
            return Result(520, String::Format("Invalid Unicode character: ( %#x ) index: ( %d )",
                                              static_cast<unsigned>(unit), static_cast<int>(i)));
        }
    }
    return Result();
}

}  // namespace zorvex_api
