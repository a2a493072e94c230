#include "app/Version.h"

namespace tbx {

fenn::String getVersionString()
{
    return "3.50";
}

std::uint32_t makeVersion(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    return (((a << 8) | b) << 16) | c;
}

std::uint32_t parseVersion(const fenn::String& text)
{
    std::uint32_t fields[3] = {0, 0, 0};
    int field = 0;
    for (char c : text.view()) {
        if (c == '.') {
            if (++field == 3) break;
        } else if (c >= '0' && c <= '9') {
            fields[field] = fields[field] * 10 + static_cast<std::uint32_t>(c - '0');
        } else {
            break;
        }
    }
    return makeVersion(fields[0], fields[1], fields[2]);
}

std::uint32_t getVersionNumber()
{
    return parseVersion(getVersionString());
}

}  // namespace tbx
