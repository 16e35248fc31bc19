#include <gtest/gtest.h>

#include "QELElementNames.h"
#include "QELFrameLine.h"

namespace {

TEST(FrameLineTest, OnlyBareTagsAreTags) {
    EXPECT_EQ(qelClassifyLine("<Item_Info>").kind, QELLineKind::Open);
    EXPECT_EQ(qelClassifyLine("<Item_Info>").name, QELElement::Item_Info);
    EXPECT_EQ(qelClassifyLine("</DESCFILE>").kind, QELLineKind::Close);
    EXPECT_EQ(qelClassifyLine("</DESCFILE>").name, QELElement::DESCFILE);
    for (const char* value :
         {"", "<>", "</>", " <A>", "<A> ", "<A b>", "<A/>", "<A>x</A>", "a<b>", "<?xml ?>", "<-->", "<1>"})
        EXPECT_EQ(qelClassifyLine(value).kind, QELLineKind::Value) << value;
}

} // namespace
