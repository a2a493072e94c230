#include "foundation/posix/CDiskStreamFactory.h"

#include <optional>
#include <string>
#include <string_view>

#include "foundation/CURIError.h"

namespace fenn::posix {

namespace {

bool isAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The length of the scheme before its ':', or nothing for text without a
// scheme. A scheme is a letter followed by letters, digits, '+', '-' or
// '.'; anything else before the first ':' (a '/', say) makes it a path.
std::optional<std::size_t> schemeLength(std::string_view text)
{
    if (text.empty() || !isAsciiLetter(text.front())) return std::nullopt;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ':') return i;
        if (!isAsciiLetter(c) && !(c >= '0' && c <= '9') && c != '+' && c != '-' && c != '.') return std::nullopt;
    }
    return std::nullopt;
}

bool isFileScheme(std::string_view scheme)
{
    constexpr std::string_view file = "file";
    if (scheme.size() != file.size()) return false;
    for (std::size_t i = 0; i < file.size(); ++i) {
        if ((scheme[i] | 0x20) != file[i]) return false;
    }
    return true;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Replaces each "%XX" by its byte. A broken escape, or one that gives a zero
// byte (which no POSIX path holds), makes the URI invalid.
std::string percentDecode(std::string_view text, const StreamURI& uri)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? hexValue(text[i + 2]) : -1;
        if (high < 0 || low < 0 || (high == 0 && low == 0)) throw CURIFormatError(uriText(uri));
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

// The POSIX path that uri names, or nothing when it has a scheme other than
// "file". Until the URI class exists this is the one place that reads URIs
// of disk files: "file:" is followed by an absolute path, optionally after
// an empty authority ("file:///a" or "file:/a").
std::optional<std::string> toFilePath(const StreamURI& uri)
{
    const std::string text = uriText(uri).toStdString();
    const std::optional<std::size_t> scheme = schemeLength(text);
    if (!scheme) return text;
    if (!isFileScheme(std::string_view(text).substr(0, *scheme))) return std::nullopt;
    std::string_view rest = std::string_view(text).substr(*scheme + 1);
    if (rest.starts_with("//")) rest.remove_prefix(2);
    // A host (or no path at all) leaves something other than '/' here.
    if (!rest.starts_with('/')) throw CURIFormatError(uriText(uri));
    // Query and fragment have no meaning for a file; a '?' or '#' in a file
    // name is written "%3F" or "%23".
    if (rest.find_first_of("?#") != std::string_view::npos) throw CURIFormatError(uriText(uri));
    return percentDecode(rest, uri);
}

}  // namespace

P<CDiskInStream> CDiskStreamFactory::tryOpenIn(const StreamURI& uri)
{
    const std::optional<std::string> path = toFilePath(uri);
    if (!path) return nullptr;
    return CDiskInStream::tryOpen(*path, uri);
}

P<CDiskOutStream> CDiskStreamFactory::tryOpenOut(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                 DeleteOnClose deleteOnClose, const char* method)
{
    checkOpenArguments(this, method, share, create, deleteOnClose);
    const std::optional<std::string> path = toFilePath(uri);
    if (!path) return nullptr;
    return CDiskOutStream::tryOpen(*path, uri, share, create, deleteOnClose);
}

P<CDiskIOStream> CDiskStreamFactory::tryOpenIO(const StreamURI& uri, StreamShare share, StreamCreate create,
                                               DeleteOnClose deleteOnClose, const char* method)
{
    checkOpenArguments(this, method, share, create, deleteOnClose);
    const std::optional<std::string> path = toFilePath(uri);
    if (!path) return nullptr;
    return CDiskIOStream::tryOpen(*path, uri, share, create, deleteOnClose);
}

P<IInStream> CDiskStreamFactory::tryOpenInStream(const StreamURI& uri)
{
    return tryOpenIn(uri);
}

P<IResetableInStream> CDiskStreamFactory::tryOpenResetableInStream(const StreamURI& uri)
{
    return tryOpenIn(uri);
}

P<ISeekableInStream> CDiskStreamFactory::tryOpenSeekableInStream(const StreamURI& uri)
{
    return tryOpenIn(uri);
}

P<IOutStream> CDiskStreamFactory::tryOpenOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                   DeleteOnClose deleteOnClose)
{
    return tryOpenOut(uri, share, create, deleteOnClose, "tryOpenOutStream");
}

P<IResetableOutStream> CDiskStreamFactory::tryOpenResetableOutStream(const StreamURI& uri, StreamShare share,
                                                                     StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenOut(uri, share, create, deleteOnClose, "tryOpenResetableOutStream");
}

P<ISeekableOutStream> CDiskStreamFactory::tryOpenSeekableOutStream(const StreamURI& uri, StreamShare share,
                                                                   StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenOut(uri, share, create, deleteOnClose, "tryOpenSeekableOutStream");
}

P<IIOStream> CDiskStreamFactory::tryOpenIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                 DeleteOnClose deleteOnClose)
{
    return tryOpenIO(uri, share, create, deleteOnClose, "tryOpenIOStream");
}

P<IResetableIOStream> CDiskStreamFactory::tryOpenResetableIOStream(const StreamURI& uri, StreamShare share,
                                                                   StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenIO(uri, share, create, deleteOnClose, "tryOpenResetableIOStream");
}

P<ISeekableIOStream> CDiskStreamFactory::tryOpenSeekableIOStream(const StreamURI& uri, StreamShare share,
                                                                 StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenIO(uri, share, create, deleteOnClose, "tryOpenSeekableIOStream");
}

}  // namespace fenn::posix
