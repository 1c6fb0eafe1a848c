# Creates a program from the C++ blocks of a document: each is a function, and main() calls them all.

BEGIN {
  print "#include <algorithm>\n#include <cstdint>\n#include <memory>\n#include <string>\n"
  print "#include <varnel_tl1/tl1.h>\n#include <varnel_common/varnel_common.h>\n"
  print "using namespace VARNEL_COMMON;\n\nnamespace {\n"
}

/^```$/ && inside { inside = 0; print "}\n"; next }
/^```cpp$/ { inside = 1; printf "void Block%d() {\n#line %d \"%s\"\n", ++blocks, FNR + 1, FILENAME; next }
inside { print }

END {
  print "}  // namespace\n\nint main() {"
  for (i = 1; i <= blocks; ++i) print "  Block" i "();"
  print "}"
  exit blocks == 0
}
