// See terminal.h.
#include "kxmsg/terminal.h"

#include <cstdio>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace kxmsg {

bool IsTerminal(Stream stream) {
  std::FILE* const file = stream == Stream::kOutput ? stdout : stderr;
#if defined(_WIN32)
  return _isatty(_fileno(file)) != 0;
#else
  return isatty(fileno(file)) == 1;
#endif
}

void UseBinaryStreams() {
#if defined(_WIN32)
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
#endif
}

}  // namespace kxmsg
