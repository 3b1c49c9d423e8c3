#include "Text.h"

using zorvex_api::String;

namespace zorvex_cli
{

std::string ToUtf8(const String& text)
{
    const char* bytes = text;
    return bytes ? std::string(bytes) : std::string();
}

String FromUtf8(const std::string& text)
{
    return String(text.c_str());
}

std::string OneLine(const std::string& text)
{
    std::string line;
    line.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if (byte < 0x20 || byte == 0x7F)
        {
            line += ' ';
        }
        else if (byte == 0xC2 && next >= 0x80 && next < 0xA0)
        {
            // U+0080 to U+009F steer some terminals.
            line += ' ';
            ++i;
        }
        else
        {
            line += text[i];
        }
    }
    return line;
}

}  // namespace zorvex_cli
