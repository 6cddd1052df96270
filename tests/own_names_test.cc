// A program that is at home in the library's namespace still has these names for itself: the
// machinery of the readers has a namespace of its own. This compiles, or it does not.
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
