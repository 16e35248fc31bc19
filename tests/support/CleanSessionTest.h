#ifndef CleanSessionTest_H
#define CleanSessionTest_H

#include <gtest/gtest.h>

#include "SessionReset.h"

namespace qeltest {

// The fixture of every test that builds a model or changes a setting: it
// starts from a freed model and default settings and leaves them so.
class CleanSessionTest : public ::testing::Test {
protected:
    void SetUp() override { resetSession(); }
    void TearDown() override { resetSession(); }
};

} // namespace qeltest

#endif
