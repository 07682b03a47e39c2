// kxmsg_pages, which the build runs: writes the man page or the Markdown page to standard output.
#include "kxmsg/manual_pages.h"

#include <cstdio>
#include <string>
#include <string_view>

int main(int argc, char* argv[]) {
  const std::string_view kind = argc == 2 ? argv[1] : "";
  if (kind != "man" && kind != "markdown") {
    std::fputs("usage: kxmsg_pages man|markdown\n", stderr);
    return 2;
  }
  const std::string page = kind == "man" ? kxmsg::ManPage() : kxmsg::MarkdownPage();
  const bool isWritten =
      std::fwrite(page.data(), 1, page.size(), stdout) == page.size() && std::fflush(stdout) == 0;
  return isWritten ? 0 : 1;
}
