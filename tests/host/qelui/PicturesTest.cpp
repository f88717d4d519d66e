// Dialogs of every size, for people to look at. What can be checked without eyes is checked in the other
// files.
#include "tests/host/qelui/ToolkitTest.h"

namespace qelui::test {

namespace {

class PicturesTest : public ToolkitTest {};

TEST_F(PicturesTest, SevenRows) {
  ListDialog dialog(SampleRows(7));
  RunWith(dialog, [&] {
    TakePicture("rows-seven");
    dialog.Close();
  });
}

TEST_F(PicturesTest, OneRow) {
  ListDialog dialog({{u"Unsupported Operating System", u"Operating System: Example 10 (22H2)",
                      u"This version is no longer maintained.", false}});
  RunWith(dialog, [&] {
    TakePicture("rows-one");
    dialog.Close();
  });
}

TEST_F(PicturesTest, ThreeHundredRows) {
  ListDialog dialog(SampleRows(300));
  RunWith(dialog, [&] {
    TakePicture("rows-three-hundred");
    dialog.Close();
  });
}

TEST_F(PicturesTest, Tree) {
  TreeDialog dialog;
  RunWith(dialog, [&] {
    TakePicture("tree-waiting");
    dialog.ShowTree(SampleTreeRows());
    TakePicture("tree");
    dialog.Close();
  });
}

}  // namespace

}  // namespace qelui::test
