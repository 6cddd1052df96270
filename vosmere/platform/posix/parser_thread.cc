#include "vosmere/platform/parser_thread.h"

namespace vosmere {

ParserThread::ParserThread() = default;

ParserThread::~ParserThread() = default;

}  // namespace vosmere
