// See run_program.h.
#include "tools/kxmsg/run_program.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <linux/capability.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace kxmsg {

namespace fs = std::filesystem;

namespace {

std::string Bytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Put(const fs::path& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// The two ends of a terminal.
struct Terminal {
  int master = -1;
  std::string name;
};

Terminal OpenTerminal() {
  Terminal terminal;
  terminal.master = posix_openpt(O_RDWR | O_NOCTTY);
  EXPECT_GE(terminal.master, 0);
  EXPECT_EQ(grantpt(terminal.master), 0);
  EXPECT_EQ(unlockpt(terminal.master), 0);
  terminal.name = ptsname(terminal.master);
  return terminal;
}

// What a terminal was shown, until nobody holds its other end.
std::string ReadTerminal(int master) {
  std::string shown;
  std::array<char, 4096> buffer{};
  while (true) {
    const ssize_t count = read(master, buffer.data(), buffer.size());
    if (count > 0) {
      shown.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      close(master);
      return Replaced(shown, "\r\n", "\n");
    }
  }
}

void Redirect(int stream, const std::string& path, int flags) {
  const int file = open(path.c_str(), flags, 0600);
  if (file < 0 || dup2(file, stream) < 0) _exit(126);
}

// Root may read and write whatever the modes of files say; without these capabilities the modes
// count for root as for every owner. What is not in the bounding set is not had behind exec.
void ObeyModes() {
  if (geteuid() != 0) return;
  for (const unsigned long capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH}) {
    if (prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0) _exit(126);
  }
}

// What the child does. Nothing here returns.
struct Child {
  bool obeysModes = false;
  std::string folder;
  std::string input;
  std::string output;
  std::string errors;
  std::vector<std::string> words;
  std::vector<std::string> environment;

  [[noreturn]] void Start() const {
    Redirect(STDIN_FILENO, input, O_RDONLY);
    Redirect(STDOUT_FILENO, output, O_WRONLY | O_CREAT);
    Redirect(STDERR_FILENO, errors, O_WRONLY | O_CREAT);
    if (chdir(folder.c_str()) != 0) _exit(126);
    if (obeysModes) ObeyModes();
    std::vector<char*> argv;
    for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (const std::string& text : environment) envp.push_back(const_cast<char*>(text.c_str()));
    envp.push_back(nullptr);
    execve(argv[0], argv.data(), envp.data());
    _exit(127);
  }
};

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr const char* kOrder = R"(<?xml version="1.0" encoding="iso-8859-1"?>
<KXMessage version="1.0.0" msgType="Order" uniqueID="5b0e64f2-8a1d-4c37-9e55-0d7c21b8a6f3" subType="" timeStamp="2024-05-17 09:30:00" schemaURL="order.xdr" deliveryOptions="0" deliveryResult="0" tag="" class="Order" encoding="iso-8859-1"><Order xmlns="x-schema:order.xdr" number="A-20417"><Header><Placed>2024-05-17T09:30:00</Placed><Customer>@</Customer></Header><Delivery><Pickup>Depot</Pickup></Delivery><Items><Item sku="LMP-100"><Description>Deck lamp</Description><Quantity>4</Quantity><Price>129.5000</Price></Item></Items></Order></KXMessage>)";

}  // namespace

ProgramTest::ProgramTest() {
  std::string name = (fs::temp_directory_path() / "kxmsg_test.XXXXXX").string();
  EXPECT_NE(mkdtemp(name.data()), nullptr);
  folder_ = name;
  for (const char* folder : {"schemas", "messages", "drive_c", "streams"}) {
    fs::create_directory(At(folder));
  }
  const fs::path examples = fs::path(KX_SOURCE_DIR) / "tests/tools/kxmsg/data";
  fs::copy_file(examples / "order.xdr", At("order.xdr"));
  fs::copy_file(examples / "order.xdr", At("schemas/order.xdr"));
  fs::copy_file(examples / "order.xml", At("order.xml"));
  Write("settings.ini", "[KXXMLMessageLib]\nSchemaPath = " + At("schemas/") +
                            "\nMsgPath = " + At("messages/") + "\n");
}

ProgramTest::~ProgramTest() {
  std::error_code ignored;
  for (const auto& entry : fs::recursive_directory_iterator(folder_, ignored)) {
    if (entry.is_directory(ignored)) {
      fs::permissions(entry, fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(folder_, ignored);
}

RunResult ProgramTest::Run(const std::vector<std::string>& words, const RunOptions& options) const {
  Child child;
  child.obeysModes = options.obeysModes;
  child.folder = At(options.folder);
  child.input = At("streams/input");
  child.output = options.outputFile.empty() ? At("streams/output") : options.outputFile;
  child.errors = At("streams/errors");
  child.words = {KXMSG_PROGRAM};
  child.words.insert(child.words.end(), words.begin(), words.end());
  child.environment = {"KX_SETTINGS=" + At("settings.ini"),
                       "KX_DRIVE_C=" + At("drive_c"),
                       "HOME=" + At("home"),
                       "TERM=xterm",
                       "LC_ALL=C.UTF-8",
                       "PATH=/usr/bin:/bin"};
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"}) {
    if (const char* const value = std::getenv(name)) {
      child.environment.push_back(std::string(name) + '=' + value);
    }
  }
  // The first of two variables of one name counts.
  child.environment.insert(child.environment.begin(), options.environment.begin(),
                           options.environment.end());
  Put(child.input, options.input);
  fs::remove(At("streams/output"));
  fs::remove(At("streams/errors"));
  Terminal terminal;
  if (options.onTerminal) {
    terminal = OpenTerminal();
    child.output = child.errors = terminal.name;
  }
  RunResult result;
  std::fflush(nullptr);
  const pid_t pid = fork();
  if (pid == 0) child.Start();
  EXPECT_GT(pid, 0);
  if (options.onTerminal) {
    // As long as this end is held, reading waits for more; a terminal holds little by itself.
    const int held = open(terminal.name.c_str(), O_RDWR | O_NOCTTY);
    std::thread reader([&] { result.output = ReadTerminal(terminal.master); });
    result.status = WaitFor(pid);
    close(held);
    reader.join();
    return result;
  }
  result.status = WaitFor(pid);
  if (options.outputFile.empty()) result.output = Bytes(child.output);
  result.errors = Bytes(child.errors);
  return result;
}

std::string ProgramTest::At(std::string_view name) const {
  return name.empty() ? folder_ : folder_ + '/' + std::string(name);
}

void ProgramTest::Write(std::string_view name, std::string_view bytes) const {
  fs::create_directories(fs::path(At(name)).parent_path());
  Put(At(name), bytes);
}

std::string ProgramTest::Read(std::string_view name) const {
  return Exists(name) ? Bytes(At(name)) : "(missing)";
}

bool ProgramTest::Exists(std::string_view name) const { return fs::exists(At(name)); }

std::string ProgramTest::Names(std::string_view folder) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(At(folder))) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  std::ostringstream text;
  for (const std::string& name : names) text << (text.tellp() == 0 ? "" : " ") << name;
  return text.str();
}

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string OrderText(std::string_view customer) { return Replaced(kOrder, "@", customer); }

}  // namespace kxmsg
