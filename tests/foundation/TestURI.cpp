#include <gtest/gtest.h>

#include <string>

#include "foundation/CURI.h"
#include "foundation/CURIError.h"

using namespace fenn;

namespace {

std::string text(const String& value)
{
    return value.toStdString();
}

CURI uri(const char* text)
{
    return CURI(String::copyOf(text));
}

TEST(URI, ParsesEachComponent)
{
    struct Case
    {
        const char* text;
        const char* scheme;
        const char* schemeSpecificPart;
        const char* authority;
        const char* userInfo;
        const char* host;
        const char* portText;
        int port;
        const char* path;
        const char* query;
        const char* fragment;
        bool relative;
        bool hierarchical;
    };
    const Case cases[] = {
        {"http://user:pw@Host:8080/a/b?q=1#frag", "http", "//user:pw@Host:8080/a/b?q=1", "user:pw@Host:8080", "user:pw",
         "Host", "8080", 8080, "/a/b", "q=1", "frag", false, true},
        {"http://host:/", "http", "//host:/", "host:", "", "host", "", -1, "/", "", "", false, true},
        {"http://[::1]:80/x", "http", "//[::1]:80/x", "[::1]:80", "", "[::1]", "80", 80, "/x", "", "", false, true},
        {"http://[::1]/x", "http", "//[::1]/x", "[::1]", "", "[::1]", "", -1, "/x", "", "", false, true},
        {"file:///home/x.wav", "file", "///home/x.wav", "", "", "", "", -1, "/home/x.wav", "", "", false, true},
        {"mailto:a@b.c#f", "mailto", "a@b.c", "", "", "", "", -1, "", "", "f", false, false},
        {"c:/x", "c", "/x", "", "", "", "", -1, "/x", "", "", false, true},
        {"//host/p?q", "", "//host/p?q", "host", "", "host", "", -1, "/p", "q", "", true, true},
        {"a/b/../c", "", "a/b/../c", "", "", "", "", -1, "a/c", "", "", true, true},
        {"?q#f", "", "?q", "", "", "", "", -1, "", "q", "f", true, true},
        {"#f", "", "", "", "", "", "", -1, "", "", "f", true, true},
        {"", "", "", "", "", "", "", -1, "", "", "", true, true},
        {"/a b/Grüße#x?y", "", "/a b/Grüße", "", "", "", "", -1, "/a b/Grüße", "", "x?y", true, true},
    };
    for (const Case& c : cases) {
        const CURI parsed = uri(c.text);
        SCOPED_TRACE(c.text);
        EXPECT_EQ(text(parsed.getRawURI()), c.text);
        EXPECT_EQ(text(parsed.getRawScheme()), c.scheme);
        EXPECT_EQ(text(parsed.getRawSchemeSpecificPart()), c.schemeSpecificPart);
        EXPECT_EQ(text(parsed.getRawAuthority()), c.authority);
        EXPECT_EQ(text(parsed.getRawUserInfo()), c.userInfo);
        EXPECT_EQ(text(parsed.getRawHost()), c.host);
        EXPECT_EQ(text(parsed.getRawPortText()), c.portText);
        EXPECT_EQ(parsed.getPort(), c.port);
        EXPECT_EQ(parsed.hasPort(), c.port >= 0);
        EXPECT_EQ(text(parsed.getRawPath()), c.path);
        EXPECT_EQ(text(parsed.getRawQuery()), c.query);
        EXPECT_EQ(text(parsed.getRawFragment()), c.fragment);
        EXPECT_EQ(parsed.isRelative(), c.relative);
        EXPECT_EQ(parsed.isHierarchical(), c.hierarchical);
        EXPECT_EQ(parsed.hasQuery(), *c.query != '\0');
    }
}

TEST(URI, DecodedFormsResolveEscapesAsUTF8)
{
    const CURI parsed = uri("http://a%40b@h/a%2Fb%3Fc/Gr%C3%BC%c3%9Fe?x%20y#f%23");
    EXPECT_EQ(text(parsed.getRawPath()), "/a%2Fb%3Fc/Gr%C3%BC%c3%9Fe");
    EXPECT_EQ(text(parsed.getPath()), "/a/b?c/Grüße");
    EXPECT_EQ(text(parsed.getUserInfo()), "a@b");
    EXPECT_EQ(text(parsed.getQuery()), "x y");
    EXPECT_EQ(text(parsed.getFragment()), "f#");
    EXPECT_EQ(text(parsed.getURI()), "http://a@b@h/a/b?c/Grüße?x y#f#");
    EXPECT_EQ(parsed.getPath().getLength(), 12);
}

TEST(URI, MalformedTextThrowsFormatErrorWithTheText)
{
    const char* cases[] = {
        "http://host:8o/", "http://host:-1/", "http://host:99999999999/", "%zz", "a%2", "x%", "1http:x", ":x",
        "a b:c",           "http://h/%g0"};
    for (const char* malformed : cases) {
        try {
            uri(malformed);
            ADD_FAILURE() << "parsed " << malformed;
        } catch (const CURIFormatError& error) {
            EXPECT_EQ(text(error.getURI().getRawURI()), malformed);
            EXPECT_EQ(text(error.getDescription()),
                      std::string("The URI ('") + malformed + "') has an invalid format.");
        }
    }
    // The text forms of the errors keep a malformed URI without throwing.
    EXPECT_EQ(text(CFileNotFoundError("%zz").getURI().getRawURI()), "%zz");
}

TEST(URI, NormalisesPaths)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a/b/../c", "a/c"},
        {"/../a", "/../a"},
        {"a/.", "a/"},
        {"/a/./b/.", "/a/b/"},
        {"a/b/..", "a/"},
        {"/a/..", "/"},
        {"a/..", "./"},
        {".", "./"},
        {"../../x", "../../x"},
        {"a/../../b", "../b"},
        {"./a", "a"},
        {"/a/b/c/../../d", "/a/d"},
        {"a/./../b", "b"},
        {"/a/..b/.c", "/a/..b/.c"},
        {"a/%2E%2E/b", "a/%2E%2E/b"},
    };
    for (const auto& [path, normalised] : cases) EXPECT_EQ(text(uri(path).getRawPath()), normalised) << path;
}

TEST(URI, ResolvesAgainstABaseAsRFC2396Shows)
{
    // The examples of RFC 2396 appendix C (normal and abnormal ones).
    const CURI base = uri("http://a/b/c/d;p?q");
    const std::pair<const char*, const char*> cases[] = {
        {"g:h", "g:h"},
        {"g", "http://a/b/c/g"},
        {"./g", "http://a/b/c/g"},
        {"g/", "http://a/b/c/g/"},
        {"/g", "http://a/g"},
        {"//g", "http://g"},
        {"?y", "http://a/b/c/?y"},
        {"g?y", "http://a/b/c/g?y"},
        {"#s", "http://a/b/c/d;p?q#s"},
        {"g#s", "http://a/b/c/g#s"},
        {"g?y#s", "http://a/b/c/g?y#s"},
        {";x", "http://a/b/c/;x"},
        {"g;x?y#s", "http://a/b/c/g;x?y#s"},
        {".", "http://a/b/c/"},
        {"./", "http://a/b/c/"},
        {"..", "http://a/b/"},
        {"../", "http://a/b/"},
        {"../g", "http://a/b/g"},
        {"../..", "http://a/"},
        {"../../g", "http://a/g"},
        {"../../../g", "http://a/../g"},
        {"../../../../g", "http://a/../../g"},
        {"/../g", "http://a/../g"},
        {"g.", "http://a/b/c/g."},
        {".g", "http://a/b/c/.g"},
        {"..g", "http://a/b/c/..g"},
        {"./../g", "http://a/b/g"},
        {"./g/.", "http://a/b/c/g/"},
        {"g/../h", "http://a/b/c/h"},
        {"g;x=1/../y", "http://a/b/c/y"},
        {"g?y/./x", "http://a/b/c/g?y/./x"},
        {"g#s/../x", "http://a/b/c/g#s/../x"},
        {"http:g", "http:g"},
    };
    for (const auto& [reference, expected] : cases) {
        CURI resolved = uri(reference);
        resolved.resolve(base);
        EXPECT_EQ(text(resolved.getRawURI()), expected) << reference;
        EXPECT_FALSE(resolved.isRelative()) << reference;
    }
    // A file URI keeps its empty authority.
    CURI file = uri("../x%20y.wav");
    file.resolve(uri("file:///music/album/"));
    EXPECT_EQ(text(file.getRawURI()), "file:///music/x%20y.wav");
    EXPECT_THROW(uri("a").resolve(uri("mailto:x@y")), CURIFormatError);
}

TEST(URI, ComposesFromComponents)
{
    struct Case
    {
        CURI composed;
        const char* expected;
    };
    const Case cases[] = {
        {CURI("http", "u s:p", "h", 8080, "a b/c;d", "x=1 2&y=?", "f g#"),
         "http://u%20s:p@h:8080/a%20b/c;d?x=1%202&y=?#f%20g%23"},
        {CURI("file", "", "", -1, "/a#b/50%?", "", ""), "file:/a%23b/50%25%3F"},
        {CURI("http", "", "h", -1, "", "q", ""), "http://h?q"},
        {CURI("http", "", "", 80, "x", "", ""), "http://:80/x"},
        {CURI("", "", "", -1, "a:b/c", "", ""), "./a:b/c"},
        {CURI("mailto", "", "", -1, "a@b", "", ""), "mailto:a@b"},
        {CURI("", "", "", -1, "Grüße €", "", ""), "Grüße%20€"},
    };
    for (const Case& c : cases) EXPECT_EQ(text(c.composed.getRawURI()), c.expected);
    EXPECT_EQ(text(cases[0].composed.getPath()), "/a b/c;d");
    EXPECT_EQ(text(cases[4].composed.getPath()), "a:b/c");
    EXPECT_TRUE(cases[4].composed.isRelative());
    EXPECT_EQ(text(uri("file:///Grüße/€").toASCII()), "file:///Gr%c3%bc%c3%9fe/%e2%82%ac");
    EXPECT_THROW(CURI("1x", "", "", -1, "a", "", ""), CURIFormatError);
}

TEST(URI, NamesParentsAndChildren)
{
    struct Case
    {
        const char* text;
        const char* fileName;
        const char* extension;
        const char* parent;
        const char* appended;  // with "n x.wav"
    };
    const Case cases[] = {
        {"file:///a/b/c.MP3", "c.MP3", "MP3", "file:///a/b/", "file:///a/b/c.MP3/n%20x.wav"},
        {"file:///a/b/", "b", "", "file:///a/", "file:///a/b/n%20x.wav"},
        {"file:///a", "a", "", "file:///", "file:///a/n%20x.wav"},
        {"file:///", "", "", "", "file:///n%20x.wav"},
        {"http://h/x.tar.gz?q#f", "x.tar.gz", "gz", "http://h/", "http://h/x.tar.gz/n%20x.wav"},
        {"http://h", "", "", "", "http://h/n%20x.wav"},
        {"/music/.hidden", ".hidden", "", "/music/", "/music/.hidden/n%20x.wav"},
        {"dir/a%20b.wav", "a b.wav", "wav", "dir/", "dir/a%20b.wav/n%20x.wav"},
        {"a", "a", "", "", "a/n%20x.wav"},
        {"", "", "", "", "n%20x.wav"},
    };
    for (const Case& c : cases) {
        const CURI parsed = uri(c.text);
        EXPECT_EQ(text(parsed.getFileName()), c.fileName) << c.text;
        EXPECT_EQ(text(parsed.getExtension()), c.extension) << c.text;
        EXPECT_EQ(text(parsed.getParent().getRawURI()), c.parent) << c.text;
        EXPECT_EQ(text(parsed.append("n x.wav").getRawURI()), c.appended) << c.text;
    }
    EXPECT_EQ(text(uri("file:///a/").append("50%/#1").getRawURI()), "file:///a/50%25/%231");
    EXPECT_THROW(uri("mailto:a@b").append("x"), CURIFormatError);
}

TEST(URI, EqualityIgnoresSpellingOnly)
{
    const std::pair<const char*, const char*> same[] = {
        {"HTTP://Host/a", "http://host/a"},  {"file:///a%20b", "file:/a b"},        {"file:///%41", "file:///A"},
        {"file:///Gr%c3%bc", "file:///Grü"}, {"file:///a/./b/../c", "file:///a/c"}, {"mailto:a@b#f", "MAILTO:a@b#f"},
    };
    for (const auto& [a, b] : same) {
        EXPECT_TRUE(uri(a).equals(uri(b))) << a << " " << b;
        EXPECT_TRUE(uri(b) == uri(a)) << a << " " << b;
    }
    const std::pair<const char*, const char*> different[] = {
        {"file:///a%2Fb", "file:///a/b"},
        {"http://h/a", "http://h:80/a"},
        {"http://h/a", "http://h/A"},
        {"http://h/a?x", "http://h/a"},
        {"/a", "file:///a"},
        {"mailto:a@b", "mailto:a@c"},
        {"http://h/a#x", "http://h/a#y"},
        {"a:b", "a:/b"},
    };
    for (const auto& [a, b] : different) EXPECT_FALSE(uri(a).equals(uri(b))) << a << " " << b;
    EXPECT_TRUE(uri("File:/x").isScheme("FILE"));
    EXPECT_FALSE(uri("files:/x").isScheme("file"));
}

TEST(URI, PathsRoundTripThroughFileURIs)
{
    const std::pair<const char*, const char*> cases[] = {
        {"/home/a b/x.wav", "file:///home/a%20b/x.wav"},
        {"/tmp/50%.wav", "file:///tmp/50%25.wav"},
        {"/a/#1 ?x;y=z@w", "file:///a/%231%20%3Fx;y=z@w"},
        {"/Grüße/€ 1.txt", "file:///Grüße/€%201.txt"},
        {"/a\\b\"c<d>", "file:///a%5Cb%22c%3Cd%3E"},
        {"//twice", "file:////twice"},
        {"/", "file:///"},
        {"relative/x y", "relative/x%20y"},
        {"C:x", "./C:x"},
        {"", ""},
    };
    for (const auto& [path, expected] : cases) {
        const CURI converted = CURI::fromPath(String::copyOf(path));
        EXPECT_EQ(text(converted.getRawURI()), expected) << path;
        EXPECT_EQ(text(converted.toPath()), path) << path;
        EXPECT_EQ(text(CURI(converted.getRawURI()).toPath()), path) << path;
    }
    EXPECT_EQ(text(uri("FILE:/home/a%20b/x.wav").toPath()), "/home/a b/x.wav");
    EXPECT_EQ(text(uri("x/y").toPath()), "x/y");

    const char* malformed[] = {"file://host/x", "file://u@/x", "file:///a?q",  "file:///a#f",
                               "file:x",        "file://",     "file:///a%00b"};
    for (const char* text : malformed) EXPECT_THROW(uri(text).toPath(), CURIFormatError) << text;
    EXPECT_THROW(uri("http://h/x").toPath(), CURITypeNotSupportedError);
}

class CNamedObject : public CObject
{
};

TEST(URI, ObjectPointersNameLiveRegisteredObjectsOnly)
{
    const auto object = make<CNamedObject>();
    String objectText;
    {
        const CURI named = CURI::forObject(object, "text/plain; charset=utf-8");
        objectText = named.getRawURI();
        EXPECT_TRUE(named.isScheme(CURI::kObjectPtrScheme));
        EXPECT_TRUE(objectText.startsWith("fenn.objectPtr:contentType="));
        EXPECT_EQ(text(named.getObjectContentType()), "text/plain; charset=utf-8");
        EXPECT_EQ(named.getObjectPtr().get(), static_cast<IBase*>(object.get()));

        // The text alone finds the object while a URI from forObject lives.
        const CURI parsed(objectText);
        EXPECT_EQ(parsed.getObjectPtr().get(), static_cast<IBase*>(object.get()));
        EXPECT_EQ(text(parsed.getObjectContentType()), "text/plain; charset=utf-8");
        EXPECT_GT(object->getReferenceCount(), 1);
    }
    EXPECT_EQ(CURI(objectText).getObjectPtr(), nullptr);
    EXPECT_EQ(object->getReferenceCount(), 1);

    const CURI plain = CURI::forObject(object);
    EXPECT_EQ(plain.getObjectPtr().get(), static_cast<IBase*>(object.get()));
    EXPECT_EQ(text(plain.getObjectContentType()), "");
    const char* nothing[] = {"fenn.objectPtr:0", "fenn.objectPtr:999999999999", "fenn.objectPtr:x",
                             "fenn.objectPtr:contentType=a", "other:1"};
    for (const char* text : nothing) EXPECT_EQ(uri(text).getObjectPtr(), nullptr) << text;
}

}  // namespace
