#include "foundation/CURI.h"

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/CFileSystemManager.h"
#include "foundation/CURIError.h"
#include "foundation/IFileSystem.h"

namespace fenn {

// The parser works on the UTF-8 bytes of the text: every character that the
// syntax looks at is ASCII, and bytes above 0x7F stand as they are, so a
// byte-wise walk gives the same result as a walk by code points and keeps
// file names that are not valid UTF-8.

namespace {

// The characters that RFC 2396 calls unreserved besides letters and digits.
constexpr std::string_view kMarks = "-_.!~*'()";
constexpr std::string_view kUserInfoSet = ";:,&=+$";
constexpr std::string_view kPathSet = ";:,/@&=+$";
constexpr std::string_view kQuerySet = ";:,/?@&=+$";
constexpr std::string_view kReserved = ";/?:@&=+$,";
// A content type stands before the ";" that separates it from the number.
constexpr std::string_view kContentTypeSet = ":,/@&=+$";
constexpr std::string_view kObjectPtrContentType = "contentType=";

bool isAsciiLetter(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isAsciiDigit(unsigned char c)
{
    return c >= '0' && c <= '9';
}

bool isUnreserved(unsigned char c)
{
    return isAsciiLetter(c) || isAsciiDigit(c) || kMarks.find(static_cast<char>(c)) != std::string_view::npos;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

void appendEscape(std::string& out, unsigned char byte, const char* digits)
{
    out += '%';
    out += digits[byte >> 4];
    out += digits[byte & 15];
}

constexpr const char* kUpperHex = "0123456789ABCDEF";
constexpr const char* kLowerHex = "0123456789abcdef";

std::string escape(std::string_view decoded, std::string_view extra)
{
    std::string out;
    out.reserve(decoded.size());
    for (const char c : decoded) {
        const auto byte = static_cast<unsigned char>(c);
        if (isUnreserved(byte) || byte > 0x7F || extra.find(c) != std::string_view::npos)
            out += c;
        else
            appendEscape(out, byte, kUpperHex);
    }
    return out;
}

// Whether every "%" is followed by two hex digits.
bool hasValidEscapes(std::string_view raw)
{
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '%') continue;
        if (i + 2 >= raw.size() || hexValue(raw[i + 1]) < 0 || hexValue(raw[i + 2]) < 0) return false;
        i += 2;
    }
    return true;
}

// Expects valid escapes (checked when the text is parsed).
std::string decode(std::string_view raw)
{
    std::string out;
    out.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] == '%' && i + 2 < raw.size()) {
            out += static_cast<char>(hexValue(raw[i + 1]) * 16 + hexValue(raw[i + 2]));
            i += 2;
        } else {
            out += raw[i];
        }
    }
    return out;
}

// The form in which two spellings of one component compare equal: escapes
// of unreserved characters resolved, every other escape in upper case,
// characters that need an escape (blanks, non-ASCII) escaped.
std::string canonical(std::string_view raw)
{
    std::string out;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const auto byte = static_cast<unsigned char>(raw[i]);
        if (byte == '%' && i + 2 < raw.size()) {
            const auto escaped = static_cast<unsigned char>(hexValue(raw[i + 1]) * 16 + hexValue(raw[i + 2]));
            if (isUnreserved(escaped))
                out += static_cast<char>(escaped);
            else
                appendEscape(out, escaped, kUpperHex);
            i += 2;
        } else if (isUnreserved(byte) || kReserved.find(raw[i]) != std::string_view::npos) {
            out += raw[i];
        } else {
            appendEscape(out, byte, kUpperHex);
        }
    }
    return out;
}

std::string lowerAscii(std::string text)
{
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

bool isValidScheme(std::string_view scheme)
{
    if (scheme.empty() || !isAsciiLetter(static_cast<unsigned char>(scheme.front()))) return false;
    for (const char c : scheme) {
        const auto byte = static_cast<unsigned char>(c);
        if (!isAsciiLetter(byte) && !isAsciiDigit(byte) && c != '+' && c != '-' && c != '.') return false;
    }
    return true;
}

std::vector<std::string> splitSegments(std::string_view path)
{
    std::vector<std::string> segments;
    std::size_t start = 0;
    for (;;) {
        const std::size_t slash = path.find('/', start);
        segments.emplace_back(path.substr(start, slash == std::string_view::npos ? slash : slash - start));
        if (slash == std::string_view::npos) return segments;
        start = slash + 1;
    }
}

// Removes "." segments and "segment/.." pairs from left to right. A ".."
// with no named segment before it stays ("/../a", "../a"). A relative path
// that comes to nothing becomes "./", which still names the current folder
// when it is resolved later.
std::string normalise(std::string_view path)
{
    if (path.empty()) return std::string();
    std::vector<std::string> segments = splitSegments(path);
    for (std::size_t i = 0; i < segments.size();) {
        if (segments[i] != ".") {
            ++i;
        } else if (i + 1 == segments.size()) {
            segments[i].clear();  // "a/." keeps its slash: "a/"
            ++i;
        } else {
            segments.erase(segments.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
    for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t i = 1; i < segments.size(); ++i) {
            if (segments[i] != ".." || segments[i - 1].empty() || segments[i - 1] == "..") continue;
            const auto before = segments.begin() + static_cast<std::ptrdiff_t>(i - 1);
            if (i + 1 == segments.size()) {
                // A trailing "b/.." leaves the slash before b: "/a/b/.." is "/a/".
                segments.erase(before);
                segments.back().clear();
            } else {
                segments.erase(before, before + 2);
            }
            changed = true;
            break;
        }
    }
    std::string result;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (i > 0) result += '/';
        result += segments[i];
    }
    if (result.empty() && path.front() != '/') return "./";
    return result;
}

// The registry behind "fenn.objectPtr:" URIs. A URI names an object by a
// number that is never reused; the text never carries an address, so a
// stale or forged URI finds nothing instead of a dangling object.
class CObjectPtrRegistry
{
public:
    static CObjectPtrRegistry& get()
    {
        // Never destroyed: entries may be let go by static objects at exit.
        static CObjectPtrRegistry* registry = new CObjectPtrRegistry;
        return *registry;
    }

    std::uint64_t add(P<IBase> object)
    {
        std::lock_guard lock(m_mutex);
        const std::uint64_t id = ++m_lastID;
        m_objects.emplace(id, std::move(object));
        return id;
    }

    void remove(std::uint64_t id)
    {
        P<IBase> object;
        {
            std::lock_guard lock(m_mutex);
            const auto found = m_objects.find(id);
            if (found == m_objects.end()) return;
            object = std::move(found->second);
            m_objects.erase(found);
        }
        // object is released here, outside the lock, in case its destructor
        // registers or looks up objects itself.
    }

    P<IBase> find(std::uint64_t id)
    {
        std::lock_guard lock(m_mutex);
        const auto found = m_objects.find(id);
        return found == m_objects.end() ? nullptr : found->second;
    }

private:
    std::mutex m_mutex;
    std::uint64_t m_lastID = 0;
    std::unordered_map<std::uint64_t, P<IBase>> m_objects;
};

// Held by the URIs made by forObject; the last one to go ends the entry.
class CObjectPtrEntry : public CObject
{
public:
    explicit CObjectPtrEntry(std::uint64_t id) : m_id(id) {}
    ~CObjectPtrEntry() override { CObjectPtrRegistry::get().remove(m_id); }
    CObjectPtrEntry(const CObjectPtrEntry&) = delete;
    CObjectPtrEntry& operator=(const CObjectPtrEntry&) = delete;

private:
    std::uint64_t m_id;
};

// The number of an object URI's scheme-specific part, 0 when there is none.
std::uint64_t objectNumber(std::string_view part)
{
    if (part.starts_with(kObjectPtrContentType)) {
        const std::size_t separator = part.rfind(';');
        if (separator == std::string_view::npos) return 0;
        part.remove_prefix(separator + 1);
    }
    if (part.empty() || part.size() > 19) return 0;
    std::uint64_t number = 0;
    for (const char c : part) {
        if (!isAsciiDigit(static_cast<unsigned char>(c))) return 0;
        number = number * 10 + static_cast<std::uint64_t>(c - '0');
    }
    return number;
}

}  // namespace

// The raw components from which a text is composed.
struct CURI::Parts
{
    std::string scheme;
    std::string userInfo;
    std::string host;
    std::string portText;
    bool authorityMarked = false;
    std::string path;
    std::string query;
    std::string fragment;
    // Set for an opaque URI, whose scheme-specific part stands whole.
    bool opaque = false;
    std::string schemeSpecificPart;
};

CURI::CURI() = default;

CURI::CURI(const String& text)
{
    parse(text);
}

CURI::CURI(const String& text, Check check)
{
    if (check == Check::strict) {
        parse(text);
        return;
    }
    try {
        parse(text);
    } catch (const CURIFormatError&) {
        *this = textOnly(text);
    }
}

CURI CURI::textOnly(const String& text)
{
    CURI uri;
    uri.m_uri = {text, text};
    return uri;
}

CURI::CURI(const String& scheme, const String& userInfo, const String& host, std::int32_t port, const String& path,
           const String& query, const String& fragment)
{
    Parts parts;
    parts.scheme = scheme.toStdString();
    parts.userInfo = escape(userInfo.toStdString(), kUserInfoSet);
    parts.host = host.toStdString();
    if (port >= 0) parts.portText = std::to_string(port);
    parts.path = escape(path.toStdString(), kPathSet);
    parts.query = escape(query.toStdString(), kQuerySet);
    parts.fragment = escape(fragment.toStdString(), kQuerySet);
    *this = compose(parts);
}

CURI CURI::fromPath(const String& path)
{
    if (path.isEmpty()) return CURI();
    Parts parts;
    parts.path = escape(path.toStdString(), kPathSet);
    if (parts.path.front() == '/') {
        parts.scheme = "file";
        parts.authorityMarked = true;
    }
    return compose(parts);
}

CURI CURI::fromUncheckedText(const String& text)
{
    return CURI(text, Check::keepMalformed);
}

CURI CURI::forObject(P<IBase> object, const String& contentType)
{
    const std::uint64_t id = CObjectPtrRegistry::get().add(std::move(object));
    const auto entry = make<CObjectPtrEntry>(id);
    std::string text = std::string(kObjectPtrScheme) + ":";
    if (!contentType.isEmpty())
        text += std::string(kObjectPtrContentType) + escape(contentType.toStdString(), kContentTypeSet) + ";";
    text += std::to_string(id);
    CURI uri(String::copyOf(text));
    uri.m_objectEntry = entry;
    return uri;
}

void CURI::setField(Field& field, const std::string& raw)
{
    field.raw = String::copyOf(raw);
    field.decoded = raw.find('%') == std::string::npos ? field.raw : String::copyOf(decode(raw));
}

void CURI::parse(const String& text)
{
    const std::string s = text.toStdString();
    if (!hasValidEscapes(s)) throw CURIFormatError(textOnly(text));
    m_uri.raw = text;
    m_uri.decoded = s.find('%') == std::string::npos ? text : String::copyOf(decode(s));

    std::string rest = s;
    const std::size_t first = s.find_first_of(":/?#");
    m_relative = first == std::string::npos || s[first] != ':';
    if (!m_relative) {
        const std::string scheme = s.substr(0, first);
        if (!isValidScheme(scheme)) throw CURIFormatError(textOnly(text));
        setField(m_scheme, scheme);
        rest = s.substr(first + 1);
    }
    const std::size_t hash = rest.find('#');
    if (hash != std::string::npos) {
        setField(m_fragment, rest.substr(hash + 1));
        rest.resize(hash);
    }
    setField(m_schemeSpecificPart, rest);

    m_hierarchical = m_relative || rest.starts_with('/');
    if (!m_hierarchical) return;

    if (rest.starts_with("//")) {
        m_authorityMarked = true;
        const std::size_t end = rest.find_first_of("/?", 2);
        const std::string authority = rest.substr(2, end == std::string::npos ? end : end - 2);
        rest = end == std::string::npos ? std::string() : rest.substr(end);
        setField(m_authority, authority);

        const std::size_t at = authority.find('@');
        const std::string hostAndPort = at == std::string::npos ? authority : authority.substr(at + 1);
        if (at != std::string::npos) setField(m_userInfo, authority.substr(0, at));
        // The last colon separates the port, unless it lies inside an IPv6
        // literal ("[::1]").
        const std::size_t colon = hostAndPort.rfind(':');
        if (colon != std::string::npos && hostAndPort.find(']', colon) == std::string::npos) {
            setField(m_host, hostAndPort.substr(0, colon));
            const std::string portText = hostAndPort.substr(colon + 1);
            setField(m_portText, portText);
            if (!portText.empty()) {
                std::int64_t port = 0;
                for (const char c : portText) {
                    if (!isAsciiDigit(static_cast<unsigned char>(c)) || port > INT32_MAX / 10)
                        throw CURIFormatError(textOnly(text));
                    port = port * 10 + (c - '0');
                }
                if (port > INT32_MAX) throw CURIFormatError(textOnly(text));
                m_port = static_cast<std::int32_t>(port);
            }
        } else {
            setField(m_host, hostAndPort);
        }
    }
    const std::size_t question = rest.find('?');
    if (question != std::string::npos) {
        setField(m_query, rest.substr(question + 1));
        rest.resize(question);
    }
    setField(m_path, normalise(rest));
}

CURI::Parts CURI::getParts() const
{
    Parts parts;
    parts.scheme = m_scheme.raw.toStdString();
    parts.userInfo = m_userInfo.raw.toStdString();
    parts.host = m_host.raw.toStdString();
    parts.portText = m_portText.raw.toStdString();
    parts.authorityMarked = m_authorityMarked;
    parts.path = m_path.raw.toStdString();
    parts.query = m_query.raw.toStdString();
    parts.fragment = m_fragment.raw.toStdString();
    parts.opaque = !m_hierarchical;
    parts.schemeSpecificPart = m_schemeSpecificPart.raw.toStdString();
    return parts;
}

CURI CURI::compose(const Parts& parts)
{
    std::string text;
    if (!parts.scheme.empty()) text = parts.scheme + ":";
    if (parts.opaque) {
        text += parts.schemeSpecificPart;
    } else {
        const bool authority = !parts.userInfo.empty() || !parts.host.empty() || !parts.portText.empty();
        std::string path = parts.path;
        // Without an authority, a path that begins with "//" would be read as
        // one; an empty authority in front keeps it a path.
        if (authority || parts.authorityMarked || path.starts_with("//")) {
            text += "//";
            if (!parts.userInfo.empty()) text += parts.userInfo + "@";
            text += parts.host;
            if (!parts.portText.empty()) text += ":" + parts.portText;
            if (!path.empty() && path.front() != '/') path.insert(0, "/");
        } else if (parts.scheme.empty()) {
            // A colon in the first segment of a relative path would be read
            // as the end of a scheme.
            const std::size_t colon = path.find(':');
            if (colon != std::string::npos && colon < path.find('/')) path.insert(0, "./");
        }
        text += path;
        if (!parts.query.empty()) text += "?" + parts.query;
    }
    if (!parts.fragment.empty()) text += "#" + parts.fragment;
    return CURI(String::copyOf(text));
}

String CURI::toPath() const
{
    if (!hasURI()) return String();
    if (!m_relative && !isScheme("file")) throw CURITypeNotSupportedError(*this);
    if (!m_hierarchical || hasUserInfo() || hasHost() || hasPortText() || hasQuery() || hasFragment())
        throw CURIFormatError(*this);
    if (!m_relative && !hasPath()) throw CURIFormatError(*this);
    // No POSIX path holds a zero byte; "%00" would cut it short.
    if (m_path.decoded.toStdString().find('\0') != std::string::npos) throw CURIFormatError(*this);
    return m_path.decoded;
}

String CURI::toASCII() const
{
    std::string out;
    for (const char c : m_uri.raw.toStdString()) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x7F)
            appendEscape(out, byte, kLowerHex);
        else
            out += c;
    }
    return String::copyOf(out);
}

String CURI::getObjectContentType() const
{
    if (!isScheme(kObjectPtrScheme)) return String();
    const std::string part = m_schemeSpecificPart.raw.toStdString();
    if (!part.starts_with(kObjectPtrContentType)) return String();
    const std::size_t separator = part.rfind(';');
    if (separator == std::string::npos) return String();
    return String::copyOf(decode(part.substr(kObjectPtrContentType.size(), separator - kObjectPtrContentType.size())));
}

bool CURI::isScheme(const String& name) const
{
    return m_scheme.raw.equalsNoCase(name);
}

String CURI::getFileName() const
{
    if (!m_hierarchical) return String();
    std::string path = m_path.raw.toStdString();
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    const std::size_t slash = path.rfind('/');
    return String::copyOf(decode(slash == std::string::npos ? path : path.substr(slash + 1)));
}

String CURI::getExtension() const
{
    const std::string name = getFileName().toStdString();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return String();
    return String::copyOf(name.substr(dot + 1));
}

CURI CURI::getParent() const
{
    if (!m_hierarchical) return CURI();
    Parts parts = getParts();
    std::string& path = parts.path;
    if (path.empty() || path == "/" || path == "./") return CURI();
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    const std::size_t slash = path.rfind('/');
    path = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    parts.query.clear();
    parts.fragment.clear();
    if (path.empty() && parts.scheme.empty() && parts.host.empty()) return CURI();
    return compose(parts);
}

void CURI::resolve(const IURI& base)
{
    if (!m_relative) return;
    if (!base.isHierarchical()) throw CURIFormatError(*this);
    const std::string fragment = m_fragment.raw.toStdString();
    Parts parts;
    parts.scheme = base.getRawScheme().toStdString();
    const bool fragmentOnly = !hasScheme() && !hasAuthority() && !m_authorityMarked && !hasPath() && !hasQuery();
    if (fragmentOnly) {
        // A reference to the current document: the base with this fragment.
        const std::string baseText = base.getRawURI().toStdString();
        std::string text = baseText.substr(0, baseText.find('#'));
        if (!fragment.empty()) text += "#" + fragment;
        *this = CURI(String::copyOf(text));
        return;
    }
    if (hasAuthority() || m_authorityMarked) {
        parts.userInfo = m_userInfo.raw.toStdString();
        parts.host = m_host.raw.toStdString();
        parts.portText = m_portText.raw.toStdString();
        parts.authorityMarked = true;
        parts.path = m_path.raw.toStdString();
    } else {
        parts.userInfo = base.getRawUserInfo().toStdString();
        parts.host = base.getRawHost().toStdString();
        parts.portText = base.getRawPortText().toStdString();
        const CURI* baseURI = dynamic_cast<const CURI*>(&base);
        parts.authorityMarked = baseURI != nullptr ? baseURI->m_authorityMarked : base.hasAuthority();
        parts.path = m_path.raw.toStdString();
        if (!parts.path.starts_with('/')) {
            const std::string basePath = base.getRawPath().toStdString();
            const std::size_t slash = basePath.rfind('/');
            const std::string folder = slash == std::string::npos ? std::string() : basePath.substr(0, slash + 1);
            parts.path = normalise(folder + parts.path);
        }
    }
    parts.query = m_query.raw.toStdString();
    parts.fragment = fragment;
    *this = compose(parts);
}

CURI CURI::append(const String& name) const
{
    if (!m_hierarchical) throw CURIFormatError(*this);
    Parts parts = getParts();
    if (!parts.path.empty() && parts.path.back() != '/') parts.path += '/';
    parts.path += escape(name.toStdString(), kPathSet);
    parts.query.clear();
    parts.fragment.clear();
    return compose(parts);
}

bool CURI::equals(const IURI& other) const
{
    if (this == &other) return true;
    if (m_relative != other.isRelative() || m_hierarchical != other.isHierarchical()) return false;
    if (!m_scheme.raw.equalsNoCase(other.getRawScheme())) return false;
    const auto same = [](const String& a, const String& b) {
        return canonical(a.toStdString()) == canonical(b.toStdString());
    };
    if (!same(m_fragment.raw, other.getRawFragment())) return false;
    if (!m_hierarchical) return same(m_schemeSpecificPart.raw, other.getRawSchemeSpecificPart());
    return same(m_userInfo.raw, other.getRawUserInfo()) &&
           lowerAscii(canonical(m_host.raw.toStdString())) == lowerAscii(canonical(other.getRawHost().toStdString())) &&
           m_port == other.getPort() && same(m_path.raw, other.getRawPath()) && same(m_query.raw, other.getRawQuery());
}

P<IBase> CURI::getObjectPtr() const
{
    if (!isScheme(kObjectPtrScheme)) return nullptr;
    const std::uint64_t number = objectNumber(m_schemeSpecificPart.raw.toStdString());
    return number == 0 ? nullptr : CObjectPtrRegistry::get().find(number);
}

P<IFileObject> CURI::getFileObject() const
{
    return CFileSystemManager::getInstance()->getFileObject(*this);
}

}  // namespace fenn
