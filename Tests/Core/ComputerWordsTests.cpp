#include "TavrinCore/Text/ComputerWords.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(ComputerWords, ASentenceNamesTheComputerItIsReadOn) {
  struct Case {
    const char* sentence;
    const char* onAMac;
    const char* elsewhere;
  };
  for (const Case& each :
       {Case{"This {Mac} has no fans.", "This Mac has no fans.", "This computer has no fans."},
        Case{"{macOS} refused. {macOS} may.", "macOS refused. macOS may.",
             "The desktop refused. The desktop may."},
        Case{"Now {macOS} asks {you}", "Now macOS asks {you}", "Now the desktop asks {you}"}}) {
    EXPECT_EQ(localSentence(each.sentence, macComputerWords), each.onAMac);
    EXPECT_EQ(localSentence(each.sentence, desktopComputerWords), each.elsewhere);
  }
}

} // namespace
} // namespace tavrin
