#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "foundation/CArgList.h"
#include "foundation/CBoxedValues.h"
#include "foundation/CError.h"
#include "foundation/CObservableValueList.h"
#include "foundation/CValueList.h"
#include "foundation/TCast.h"
#include "foundation/ValueParsers.h"

using namespace fenn;

namespace {

using Events = std::vector<std::string>;

// Writes "<id> <event> <name>=<int value now in the list>" for each call, so
// a test sees both the order and that the change was made before the call.
class RecordingListener : public CObject, public virtual IValueListListener
{
public:
    RecordingListener(std::string id, Events& events) : m_id(std::move(id)), m_events(events) {}

    void valueChanged(IObservableValueList* list, const String& name) override { record(list, "changed", name); }
    void valueRemoved(IObservableValueList* list, const String& name) override { record(list, "removed", name); }
    void valuesCleared(IObservableValueList* list) override
    {
        m_events.push_back(m_id + " cleared count=" + std::to_string(list->getCount()));
        if (onCall) onCall(list);
    }
    void valueAdded(IObservableValueList* list, const String& name) override { record(list, "added", name); }

    // Runs after each call is recorded.
    std::function<void(IObservableValueList*)> onCall;

private:
    void record(IObservableValueList* list, const char* event, const String& name)
    {
        m_events.push_back(m_id + " " + event + " " + name.toStdString() + "=" +
                           std::to_string(list->getInt(name, -1)));
        if (onCall) onCall(list);
    }

    std::string m_id;
    Events& m_events;
};

std::vector<std::string> namesOf(const IValueList& list)
{
    std::vector<std::string> names;
    P<IConstEnum> enumerator = list.getNames();
    while (enumerator->hasMoreElements()) {
        PC<IBase> element;
        enumerator->next(element);
        names.push_back(String(P<IString>(const_cast<IString*>(TCast<IString>(element.get())))).toStdString());
    }
    return names;
}

}  // namespace

TEST(ObservableValueList, ListenersHearEachChangeLastAddedFirst)
{
    Events events;
    auto list = make<CObservableValueList>(make<CValueList>(CaseSensitivity::insensitive));
    auto first = make<RecordingListener>("first", events);
    auto second = make<RecordingListener>("second", events);
    list->addListener(first.get());
    list->addFrailListener(second.get());

    CValueList other;
    other.setInt("x", 7);
    struct Step
    {
        const char* what;
        std::function<void()> run;
        Events expected;
    };
    const Step steps[] = {
        {"new name", [&] { list->setInt("Volume", 1); }, {"second added Volume=1", "first added Volume=1"}},
        {"known name in another case",
         [&] { list->setInt("VOLUME", 2); },
         {"second changed VOLUME=2", "first changed VOLUME=2"}},
        {"other type",
         [&] { list->setDouble("volume", 0.5); },
         {"second changed volume=-1", "first changed volume=-1"}},
        {"boxed value", [&] { list->setValue("gain", make<CInt>(3)); }, {"second added gain=3", "first added gain=3"}},
        {"removal",
         [&] { EXPECT_TRUE(list->removeValue("Gain")); },
         {"second removed Gain=-1", "first removed Gain=-1"}},
        {"removal of a missing name", [&] { EXPECT_FALSE(list->removeValue("gain")); }, {}},
        {"refused null value", [&] { EXPECT_THROW(list->setValue("n", nullptr), CInvalidArgError); }, {}},
        {"remove all", [&] { list->removeAll(); }, {"second cleared count=0", "first cleared count=0"}},
        {"assign",
         [&] { list->assign(other); },
         {"second cleared count=1", "first cleared count=1", "second added x=7", "first added x=7"}},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        events.clear();
        step.run();
        EXPECT_EQ(events, step.expected);
    }

    list->removeListener(second.get());
    events.clear();
    list->setInt("after", 1);
    EXPECT_EQ(events, (Events{"first added after=1"}));
}

TEST(ObservableValueList, ListenersMayChangeTheListenersAndTheListWhileCalled)
{
    Events events;
    auto list = make<CObservableValueList>();
    auto a = make<RecordingListener>("a", events);
    auto b = make<RecordingListener>("b", events);
    auto c = make<RecordingListener>("c", events);
    list->addListener(a.get());
    list->addListener(b.get());
    list->addListener(c.get());

    // c, called first, removes itself; b removes a, which has not been called.
    c->onCall = [&](IObservableValueList* l) { l->removeListener(c.get()); };
    b->onCall = [&](IObservableValueList* l) { l->removeListener(a.get()); };
    list->setInt("v", 1);
    EXPECT_EQ(events, (Events{"c added v=1", "b added v=1"}));

    // A write from inside a call is reported at once, nested in the first.
    events.clear();
    b->onCall = [&](IObservableValueList* l) {
        if (!l->hasValue("echo")) l->setInt("echo", 2);
    };
    list->setInt("v", 3);
    EXPECT_EQ(events, (Events{"b changed v=3", "b added echo=2"}));
}

TEST(ArgList, MapsArgumentsToNamesAndValues)
{
    // Each argument and what it becomes: options as name=value, positional
    // arguments as #name=value; "--" itself becomes nothing.
    const std::pair<const char*, const char*> cases[] = {
        {"--verbose", "verbose=true"},
        {"--rate=44100", "rate=44100"},
        {"mainwindow.width=800", "mainwindow.width=800"},
        {"-v", "#0=-v"},
        {"/music/a=b.wav", "#1=/music/a=b.wav"},
        {"", "#2="},
        {"--5", "#3=--5"},
        {"--=x", "#4=--=x"},
        {"--title=a=b", "title=a=b"},
        {"--rate=48000", "rate=48000"},
        {"--", nullptr},
        {"--late=1", "#5=--late=1"},
        {"x=1", "#6=x=1"},
        {"--title=\xC3\x9C", "#7=--title=\xC3\x9C"},
    };
    std::vector<const char*> argv = {"tonebench-cli"};
    std::vector<std::string> expected;
    for (const auto& [argument, mapped] : cases) {
        argv.push_back(argument);
        if (mapped) expected.push_back(mapped);
    }
    auto args = CArgList::fromCommandLine(static_cast<int>(argv.size()), argv.data());
    std::vector<std::string> seen;
    for (std::int32_t i = 0; i < args->getArgCount(); ++i) {
        const P<CArg>& arg = args->getArg(i);
        seen.push_back((arg->getKind() == CArg::Kind::positional ? "#" : "") + arg->getName().toStdString() + "=" +
                       arg->getValue().toStdString());
    }
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(args->getArg(1)->getText(), String("--rate=44100"));

    EXPECT_EQ(namesOf(*args), (std::vector<std::string>{"verbose", "rate", "mainwindow.width", "0", "1", "2", "3", "4",
                                                        "title", "5", "6", "7"}));
    EXPECT_EQ(args->getCount(), 12);
    EXPECT_EQ(args->getInt("rate", 0), 48000);  // the last one counts
    EXPECT_TRUE(args->getBool("verbose", false));
    EXPECT_EQ(args->getDouble("mainwindow.width", 0), 800.0);
    EXPECT_EQ(args->getInt64("mainwindow.width", 0), 800);
    EXPECT_EQ(args->getFloat("rate", 0), 48000.0f);
    EXPECT_EQ(args->getString("title", ""), String("a=b"));
    EXPECT_EQ(TCast<IString>(args->getValue("0"))->getByteSize(), 2);
    // Texts that do not parse, names in another case and missing names give the default.
    EXPECT_EQ(args->getInt("title", -1), -1);
    EXPECT_TRUE(args->getBool("rate", true));
    EXPECT_FALSE(args->hasValue("Rate"));
    EXPECT_EQ(args->getString("missing", "d"), String("d"));
    EXPECT_EQ(args->getValue("missing"), nullptr);
}

TEST(ArgList, EveryWriteThrowsReadOnly)
{
    CArgList args({"--a=1", "file.wav"});
    CValueList other;
    const std::function<void()> writes[] = {
        [&] { args.setValue("a", make<CInt>(2)); },
        [&] { args.setBool("a", true); },
        [&] { args.setInt("a", 2); },
        [&] { args.setInt64("a", 2); },
        [&] { args.setFloat("a", 2); },
        [&] { args.setDouble("a", 2); },
        [&] { args.setString("a", "2"); },
        [&] { args.removeValue("a"); },
        [&] { args.removeAll(); },
        [&] { args.assign(other); },
    };
    for (const auto& write : writes) EXPECT_THROW(write(), CReadOnlyError);
    EXPECT_EQ(args.getInt("a", 0), 1);
    EXPECT_EQ(args.getString("0", ""), String("file.wav"));
    EXPECT_EQ(args.getCount(), 2);
}

TEST(ValueParsers, ReadTheTextFormsOrThrow)
{
    EXPECT_TRUE(parseBool("true"));
    EXPECT_FALSE(parseBool("false"));
    for (const char* text : {"True", "FALSE", "1", " true", "", "truex"}) {
        EXPECT_THROW(parseBool(text), CParseError) << text;
    }
    try {
        parseBool("True");
    } catch (const CParseError& error) {
        EXPECT_EQ(error.getDescription(), String("Error parsing boolean value."));
    }

    EXPECT_EQ(parseInt("-42"), -42);
    EXPECT_EQ(parseInt("+7"), 7);
    EXPECT_EQ(parseInt64("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(parseDouble("-0.25"), -0.25);
    EXPECT_EQ(parseFloat("3.5"), 3.5f);
    EXPECT_EQ(parseFloat("-inf"), -std::numeric_limits<float>::infinity());
    for (const char* text : {"", "12a", "0x10", "1.5"}) EXPECT_THROW(parseInt(text), CParseError) << text;
    for (const char* text : {"", "abc", "1.5x"}) EXPECT_THROW(parseDouble(text), CParseError) << text;
    // Finite, but beyond float.
    EXPECT_THROW(parseFloat("1e39"), CParseError);
}
