// Does not compile; see CMakeLists.txt.
#include <quillon/memory/TypedArray.h>

int main() { const quillon::memory::TypedArray<int*> array("a", {{"x", 1}}, std::vector<int*>(1)); }
