#pragma once

#include <cstdint>
#include <string>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace fenn {

class CURI;
class IFileObject;

// The read side of a URI. Every text field comes in the decoded form (getX,
// escapes resolved, read as UTF-8) and the raw form as written (getRawX);
// hasX is true when the raw form is not empty. Port numbers are -1 when
// there is none.
class IURI : public virtual IBase
{
public:
    // The whole text as given or composed.
    virtual bool hasURI() const = 0;
    virtual String getURI() const = 0;
    virtual String getRawURI() const = 0;
    // The scheme, without its colon.
    virtual bool hasScheme() const = 0;
    virtual String getScheme() const = 0;
    virtual String getRawScheme() const = 0;
    // Everything between the scheme's colon and the fragment.
    virtual bool hasSchemeSpecificPart() const = 0;
    virtual String getSchemeSpecificPart() const = 0;
    virtual String getRawSchemeSpecificPart() const = 0;
    // What follows "//" up to the path.
    virtual bool hasAuthority() const = 0;
    virtual String getAuthority() const = 0;
    virtual String getRawAuthority() const = 0;
    virtual bool hasUserInfo() const = 0;
    virtual String getUserInfo() const = 0;
    virtual String getRawUserInfo() const = 0;
    virtual bool hasHost() const = 0;
    virtual String getHost() const = 0;
    virtual String getRawHost() const = 0;
    virtual bool hasPortText() const = 0;
    virtual String getPortText() const = 0;
    virtual String getRawPortText() const = 0;
    virtual bool hasPort() const = 0;
    virtual std::int32_t getPort() const = 0;
    // The path, normalised ("a/b/../c" is "a/c").
    virtual bool hasPath() const = 0;
    virtual String getPath() const = 0;
    virtual String getRawPath() const = 0;
    // Without the "?".
    virtual bool hasQuery() const = 0;
    virtual String getQuery() const = 0;
    virtual String getRawQuery() const = 0;
    // Without the "#".
    virtual bool hasFragment() const = 0;
    virtual String getFragment() const = 0;
    virtual String getRawFragment() const = 0;
    // No scheme.
    virtual bool isRelative() const = 0;
    // The scheme-specific part is a path form ("/..." or a relative
    // reference), not an opaque text such as "mailto:a@b".
    virtual bool isHierarchical() const = 0;

    // Whether the scheme is name, in any case.
    virtual bool isScheme(const String& name) const = 0;
    // The decoded file name's extension without the dot ("MP3" of
    // "/a/b.MP3"); empty when the name has no dot after its first character.
    virtual String getExtension() const = 0;
    // The decoded last segment of the path; a trailing "/" is passed over,
    // so the file name of "file:///music/" is "music".
    virtual String getFileName() const = 0;
    // The folder that holds the last segment, ending in "/", without query
    // and fragment ("file:///a/b/" for "file:///a/b/c.wav" and for
    // "file:///a/b/c/"). A URI with nothing above gives the empty URI.
    virtual CURI getParent() const = 0;
    // Resolves this relative URI against base (RFC 2396 section 5.2); an
    // absolute URI stays as it is. The one operation that changes a URI: call
    // it before the URI is shared.
    virtual void resolve(const IURI& base) = 0;
    // The URI one level down: name is a decoded relative path ("x.wav" or
    // "sub/x.wav"), escaped on the way in. Query and fragment are dropped.
    virtual CURI append(const String& name) const = 0;
    // The same place: schemes and hosts compared in any case, escapes of
    // unreserved characters and the case of hex digits disregarded.
    virtual bool equals(const IURI& other) const = 0;
    // The object that a "fenn.objectPtr:" URI names, while it is registered;
    // null for every other URI.
    virtual P<IBase> getObjectPtr() const = 0;
    // The file object through the shared file system manager; null when
    // there is nothing at the place.
    virtual P<IFileObject> getFileObject() const = 0;
};

// A URI parsed after the generic syntax of RFC 2396. Apart from resolve it
// is immutable and may be shared between threads once built. It is a value:
// copies are cheap enough to pass around, and streams, file objects and
// errors hold their URI by value.
//
// Three ways to make one: from a text (the implicit constructor, so a
// String goes wherever a URI is expected), from a POSIX path (fromPath),
// and from its components. A text is a URI, never a path: "/tmp/50%.wav" is
// a malformed URI, and "c:/x" has the scheme "c". Text that does not follow
// the syntax throws CURIFormatError: a "%" without two hex digits, a scheme
// that does not start with a letter or holds other characters than letters,
// digits, "+", "-" and ".", a port that is not a decimal number. Other
// characters that RFC 2396 would have escaped (blanks, non-ASCII) are taken
// as they stand.
//
// Paths: a "file" URI's decoded path is the POSIX path as it stands
// ("file:///home/a%20b/x.wav" is "/home/a b/x.wav"); a "file" URI with a
// host, query or fragment names no local file.
class CURI : public CObject, public virtual IURI
{
public:
    // Scheme of the URIs that name objects held in memory.
    static constexpr const char* kObjectPtrScheme = "fenn.objectPtr";

    // The empty URI: relative, with no path.
    CURI();
    CURI(const String& text);
    // Composes the text from decoded components, each escaped with its own
    // set of allowed characters. Empty components and a port of -1 are left
    // out; a path gets a "/" in front when there is an authority.
    CURI(const String& scheme, const String& userInfo, const String& host, std::int32_t port, const String& path,
         const String& query = String(), const String& fragment = String());

    // A "file" URI for an absolute POSIX path ("/home/a b" gives
    // "file:///home/a%20b"), a relative URI for a relative path, the empty
    // URI for an empty path. "." and ".." segments are normalised away.
    static CURI fromPath(const String& path);
    // Parses text like the text constructor; text that does not parse is
    // kept whole as the URI's text, with no components. For errors that
    // carry a malformed URI.
    static CURI fromUncheckedText(const String& text);
    // A "fenn.objectPtr:" URI for object, optionally with a content type
    // ("fenn.objectPtr:contentType=audio/x-wav;7"). The object is held in a
    // registry under a fresh number for as long as this URI or a copy of it
    // lives; a URI parsed from the same text finds the object only then.
    static CURI forObject(P<IBase> object, const String& contentType = String());

    // The POSIX path that this "file" URI, or URI without a scheme, names;
    // empty for the empty URI. Another scheme throws
    // CURITypeNotSupportedError; a host, user, port, query or fragment, an
    // opaque "file:" URI, a "file" URI without a path or a path with a zero
    // byte throw CURIFormatError.
    String toPath() const;
    // The text with the non-ASCII characters written as "%" escapes of their
    // UTF-8 bytes, in lower-case hex digits.
    String toASCII() const;
    // The content type of a "fenn.objectPtr:contentType=" URI, else empty.
    String getObjectContentType() const;

    bool hasURI() const override { return !m_uri.raw.isEmpty(); }
    String getURI() const override { return m_uri.decoded; }
    String getRawURI() const override { return m_uri.raw; }
    bool hasScheme() const override { return !m_scheme.raw.isEmpty(); }
    String getScheme() const override { return m_scheme.decoded; }
    String getRawScheme() const override { return m_scheme.raw; }
    bool hasSchemeSpecificPart() const override { return !m_schemeSpecificPart.raw.isEmpty(); }
    String getSchemeSpecificPart() const override { return m_schemeSpecificPart.decoded; }
    String getRawSchemeSpecificPart() const override { return m_schemeSpecificPart.raw; }
    bool hasAuthority() const override { return !m_authority.raw.isEmpty(); }
    String getAuthority() const override { return m_authority.decoded; }
    String getRawAuthority() const override { return m_authority.raw; }
    bool hasUserInfo() const override { return !m_userInfo.raw.isEmpty(); }
    String getUserInfo() const override { return m_userInfo.decoded; }
    String getRawUserInfo() const override { return m_userInfo.raw; }
    bool hasHost() const override { return !m_host.raw.isEmpty(); }
    String getHost() const override { return m_host.decoded; }
    String getRawHost() const override { return m_host.raw; }
    bool hasPortText() const override { return !m_portText.raw.isEmpty(); }
    String getPortText() const override { return m_portText.decoded; }
    String getRawPortText() const override { return m_portText.raw; }
    bool hasPort() const override { return m_port >= 0; }
    std::int32_t getPort() const override { return m_port; }
    bool hasPath() const override { return !m_path.raw.isEmpty(); }
    String getPath() const override { return m_path.decoded; }
    String getRawPath() const override { return m_path.raw; }
    bool hasQuery() const override { return !m_query.raw.isEmpty(); }
    String getQuery() const override { return m_query.decoded; }
    String getRawQuery() const override { return m_query.raw; }
    bool hasFragment() const override { return !m_fragment.raw.isEmpty(); }
    String getFragment() const override { return m_fragment.decoded; }
    String getRawFragment() const override { return m_fragment.raw; }
    bool isRelative() const override { return m_relative; }
    bool isHierarchical() const override { return m_hierarchical; }

    bool isScheme(const String& name) const override;
    String getExtension() const override;
    String getFileName() const override;
    CURI getParent() const override;
    void resolve(const IURI& base) override;
    CURI append(const String& name) const override;
    bool equals(const IURI& other) const override;
    P<IBase> getObjectPtr() const override;
    P<IFileObject> getFileObject() const override;

    // The raw text; toStdString gives it as UTF-8.
    String toString() const override { return m_uri.raw; }
    std::string toStdString() const { return m_uri.raw.toStdString(); }

    friend bool operator==(const CURI& a, const CURI& b) { return a.equals(b); }
    friend bool operator!=(const CURI& a, const CURI& b) { return !a.equals(b); }

private:
    struct Field
    {
        String raw;
        String decoded;
    };
    struct Parts;

    enum class Check { strict, keepMalformed };
    CURI(const String& text, Check check);
    // A URI of text alone, without components.
    static CURI textOnly(const String& text);

    void parse(const String& text);
    void setField(Field& field, const std::string& raw);
    Parts getParts() const;
    static CURI compose(const Parts& parts);

    Field m_uri;
    Field m_scheme;
    Field m_schemeSpecificPart;
    Field m_authority;
    Field m_userInfo;
    Field m_host;
    Field m_portText;
    Field m_path;
    Field m_query;
    Field m_fragment;
    std::int32_t m_port = -1;
    bool m_relative = true;
    bool m_hierarchical = true;
    // The text had "//" before an authority that may be empty ("file:///a"),
    // which derived URIs keep.
    bool m_authorityMarked = false;
    // Keeps the registry entry of a URI made by forObject.
    P<CObject> m_objectEntry;
};

}  // namespace fenn
