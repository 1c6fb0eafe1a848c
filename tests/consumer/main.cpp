// A stranger's program: it knows the installed headers and nothing of the build tree, and uses every name that the
// library exports.
#include "families.h"

int main() {
  UseBuffers();
  UseTexts();
  UsePaths();
  UseTimes();
  UseEvents();
  UseTl1();
  UseSlots();
  UseSoftwareFiles();
  UsePlatform();
}
