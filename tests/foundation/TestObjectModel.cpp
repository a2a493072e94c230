#include <gtest/gtest.h>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace {

TEST(ObjectModel, NewObjectStartsWithOneCount)
{
    auto object = fenn::make<fenn::CObject>();
    EXPECT_EQ(object->getReferenceCount(), 1);
}

}  // namespace
