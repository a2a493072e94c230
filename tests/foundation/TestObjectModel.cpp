#include <gtest/gtest.h>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "foundation/TCast.h"

using namespace fenn;

namespace {

// Counts its destructions. Its destructor passes itself around through a P,
// as destructors do that tell listeners of their end.
class CMortal : public CObject
{
public:
    static inline int destructions = 0;
    static inline std::int32_t countInDestructor = 0;
    ~CMortal() override
    {
        ++destructions;
        countInDestructor = getReferenceCount();
        P<CMortal> passedAround(this);
    }
};

TEST(ObjectModel, LastReleaseParksCountAndDestroysOnce)
{
    CMortal::destructions = 0;
    CMortal* object = make<CMortal>().detach();
    EXPECT_EQ(object->getReferenceCount(), 1);
    object->addRef();
    object->release();
    EXPECT_EQ(CMortal::destructions, 0);
    object->release();
    EXPECT_EQ(CMortal::destructions, 1);
    EXPECT_EQ(CMortal::countInDestructor, -1000000);
}

TEST(ObjectModel, PointersKeepCountsRight)
{
    CMortal::destructions = 0;
    P<CMortal> first = make<CMortal>();
    CMortal* raw = first.get();
    P<CMortal> copy = first;
    EXPECT_EQ(raw->getReferenceCount(), 2);
    P<IBase> moved = std::move(copy);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(raw->getReferenceCount(), 2);
    moved = nullptr;

    // Self-assignment of the only holder: the new value is counted before
    // the old one is let go.
    P<CMortal>& alias = first;
    first = alias;
    first = alias.get();
    first = std::move(alias);
    EXPECT_EQ(first.get(), raw);
    EXPECT_EQ(raw->getReferenceCount(), 1);

    P<CMortal> other = make<CMortal>();
    first = other;
    EXPECT_EQ(CMortal::destructions, 1);
    EXPECT_EQ(other->getReferenceCount(), 2);
    first = make<CMortal>();
    EXPECT_EQ(other->getReferenceCount(), 1);

    auto object = make<CObject>();
    PFrail<CObject> empty;
    EXPECT_TRUE(empty.isStrong());
    {
        PFrail<CObject> frail(object.get(), Hold::frail);
        PFrail<CObject> frailCopy = frail;
        EXPECT_FALSE(frailCopy.isStrong());
        EXPECT_EQ(object->getReferenceCount(), 1);
        PFrail<CObject> strong(object.get(), Hold::strong);
        PFrail<CObject> strongCopy = strong;
        EXPECT_EQ(object->getReferenceCount(), 3);
        strongCopy = frail;
        EXPECT_EQ(object->getReferenceCount(), 2);
        frailCopy = strong;
        EXPECT_EQ(object->getReferenceCount(), 3);
    }
    EXPECT_EQ(object->getReferenceCount(), 1);
}

class IFirst : public virtual IBase
{
};
class ISecond : public virtual IBase
{
};
class CBoth : public CObject, public virtual IFirst, public virtual ISecond
{
};

// Presents other objects to the cast, as a stream presents the one it wraps;
// unset, it is a plain IFirst.
class CWrapper : public CObject, public virtual IFirst
{
public:
    bool answer = true;
    IBase* primary = nullptr;
    const CCastDelegateList* others = nullptr;
    bool getCastDelegates(const std::type_info&, IBase*& primaryOut, const CCastDelegateList*& othersOut) override
    {
        primaryOut = primary;
        othersOut = others;
        return answer;
    }
};

TEST(ObjectModel, CastFollowsTypeInformationAndDelegates)
{
    EXPECT_EQ(TCast<IFirst>(static_cast<IBase*>(nullptr)), nullptr);
    EXPECT_NO_THROW(EXPECT_EQ(TCastChecked<IFirst>(static_cast<IBase*>(nullptr)), nullptr));
    auto both = make<CBoth>();
    auto plain = make<CWrapper>();
    ISecond* bothSecond = both.get();
    EXPECT_EQ(TCast<ISecond>(static_cast<IFirst*>(both.get())), bothSecond);
    EXPECT_EQ(TCast<ISecond>(static_cast<IFirst*>(plain.get())), nullptr);
    EXPECT_EQ(TCast<ISecond>(P<IFirst>(both)).get(), bothSecond);

    // A primary delegate is followed through two wrappers and wins over the
    // wrapper's own type; without deep the wrapper answers for itself.
    auto inner = make<CWrapper>();
    auto outer = make<CWrapper>();
    inner->primary = both.get();
    outer->primary = inner.get();
    EXPECT_EQ(TCast<ISecond>(outer.get()), bothSecond);
    EXPECT_EQ(TCast<IFirst>(outer.get()), static_cast<IFirst*>(both.get()));
    EXPECT_EQ(TCast<IFirst>(outer.get(), false), static_cast<IFirst*>(outer.get()));
    EXPECT_EQ(TCast<ISecond>(outer.get(), false), nullptr);

    // The other delegates are tried in order, each without deep.
    const CCastDelegateList third{both.get(), nullptr};
    const CCastDelegateList second{inner.get(), &third};
    const CCastDelegateList head{plain.get(), &second};
    outer->primary = nullptr;
    outer->others = &head;
    EXPECT_EQ(TCast<ISecond>(outer.get()), bothSecond);
    const CCastDelegateList wrapperOnly{inner.get(), nullptr};
    outer->others = &wrapperOnly;
    EXPECT_EQ(TCast<ISecond>(outer.get()), nullptr);

    // A refusal wins even over the object's own type.
    outer->answer = false;
    EXPECT_EQ(TCast<IFirst>(outer.get()), nullptr);
    EXPECT_THROW(TCastChecked<IFirst>(outer.get()), CCastError);
    try {
        TCastChecked<ISecond>(P<IFirst>(plain));
        FAIL() << "no CCastError";
    } catch (const CCastError& error) {
        const String className = getClassName(typeid(CWrapper));
        const String targetName = getClassName(typeid(ISecond));
        EXPECT_TRUE(className.contains("CWrapper") && targetName.contains("ISecond"));
        EXPECT_EQ(error.getTitle(), String("Cast error"));
        EXPECT_EQ(error.getDescription(), "Error casting a '" + className + "' object to '" + targetName + "'.");
    }
    EXPECT_EQ(plain->getReferenceCount(), 1);
}

}  // namespace
