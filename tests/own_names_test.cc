// A program with `using namespace vosmere` can use these names itself, because the building blocks
// of the readers have a namespace of their own. The test is that this compiles.
#include "vosmere/cpp.h"

using namespace vosmere;

namespace {

struct Call {};
struct Field {};
struct Ignored {};
struct Number {};
struct Scopes {};
struct Text {};

}  // namespace

constexpr struct {
  Call call;
  Field field;
  Ignored ignored;
  Number number;
  Scopes scopes;
  Text text;
} kRecord = {};
static_assert(sizeof kRecord.text == sizeof(Text));
