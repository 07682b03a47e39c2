// kxmsg header: the properties of a message's header by name.
#include "kxmessage/message.h"

#include "kxmsg/commands.h"
#include "kxmsg/files.h"
#include "kxmsg/text_form.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <span>
#include <vector>

namespace kxmsg {

namespace {

// A day number counts from 30 December 1899; the time of day is its fraction without its sign.
std::string DateText(kx::Date date) {
  constexpr double kSecondsOfDay = 86400;
  double day = std::trunc(date.value);
  double seconds = std::round(std::abs(date.value - day) * kSecondsOfDay);
  if (seconds >= kSecondsOfDay) {
    day += 1;
    seconds = 0;
  }
  using namespace std::chrono;  // NOLINT(google-build-using-namespace): the words of a calendar
  constexpr sys_days kFirst = year{1899} / December / 30;
  const year_month_day ymd{kFirst + days(static_cast<int>(day))};
  const auto second = static_cast<int>(seconds);
  std::array<char, 64> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d",
                    static_cast<int>(ymd.year()), static_cast<unsigned>(ymd.month()),
                    static_cast<unsigned>(ymd.day()), second / 3600, second / 60 % 60, second % 60);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::int32_t NumberOf(std::string_view name, std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw UsageFailure{std::string(name) + " is a number from -2147483648 to 2147483647, not " +
                       Quoted(text) + '.'};
  }
  return number;
}

struct Property {
  std::string_view name;
  std::string (*read)(const kx::KXMessage&);
  void (*write)(const kx::KXMessage&, std::string_view);  // null: it can only be read
};

using Message = const kx::KXMessage&;
using Text = std::string_view;

constexpr Property kProperties[] = {
    {"Version", [](Message m) { return m.Version(); }, [](Message m, Text v) { m.Version(v); }},
    {"MsgType", [](Message m) { return m.MsgType(); }, [](Message m, Text v) { m.MsgType(v); }},
    {"SubType", [](Message m) { return m.SubType(); }, [](Message m, Text v) { m.SubType(v); }},
    {"Class", [](Message m) { return m.Class(); }, [](Message m, Text v) { m.Class(v); }},
    {"Encoding", [](Message m) { return m.Encoding(); }, [](Message m, Text v) { m.Encoding(v); }},
    {"TimeStamp", [](Message m) { return DateText(m.TimeStamp()); }, nullptr},
    {"UniqueID", [](Message m) { return m.UniqueID(); }, nullptr},
    {"SchemaFile", [](Message m) { return m.SchemaFile(); }, nullptr},
    {"DeliveryOptions", [](Message m) { return std::to_string(m.DeliveryOptions()); },
     [](Message m, Text v) { m.DeliveryOptions(NumberOf("DeliveryOptions", v)); }},
    {"DeliveryResult", [](Message m) { return std::to_string(m.DeliveryResult()); },
     [](Message m, Text v) { m.DeliveryResult(NumberOf("DeliveryResult", v)); }},
    {"Tag", [](Message m) { return m.Tag(); }, [](Message m, Text v) { m.Tag(v); }},
};

const Property& GetProperty(std::string_view name) {
  for (const Property& property : kProperties) {
    if (SameName(property.name, name)) return property;
  }
  throw UsageFailure{"No header property is called " + Quoted(name) + '.'};
}

struct Item {
  const Property* property = nullptr;
  std::string value;  // to be given to it
};

// What the command line asks for. All of it is looked at before any file is.
struct Request {
  std::vector<Item> items;
  bool isChange = false;
};

Request RequestOf(const Arguments& arguments) {
  Request request;
  for (const std::string& text : arguments.headerItems) {
    const std::size_t sign = text.find('=');
    const bool isChange = sign != std::string::npos;
    if (!request.items.empty() && isChange != request.isChange) {
      throw UsageFailure{"NAME and NAME=VALUE do not go together."};
    }
    request.isChange = isChange;
    const Property& property = GetProperty(std::string_view(text).substr(0, sign));
    if (isChange && property.write == nullptr) {
      throw UsageFailure{std::string(property.name) + " can only be read."};
    }
    request.items.push_back({&property, isChange ? text.substr(sign + 1) : std::string()});
  }
  if (arguments.hasOutput && !request.isChange) {
    throw UsageFailure{"-o needs a change, NAME=VALUE."};
  }
  return request;
}

// One property that cannot be read does not keep the others from being listed.
ExitStatus PrintAll(const kx::KXMessage& message, const Arguments& arguments, Console& console) {
  ExitStatus status = ExitStatus::kDone;
  for (const Property& property : kProperties) {
    try {
      console.Print(std::string(property.name) + '=' + Printable(property.read(message)) + '\n');
    } catch (const kx::Error& error) {
      console.PrintFailure(ShownName(arguments.file), DescribeError(error));
      status = ExitStatus::kBad;
    }
  }
  return status;
}

}  // namespace

ExitStatus RunHeader(const Arguments& arguments, Console& console) {
  const Request request = RequestOf(arguments);
  const kx::KXMessage message = LoadMessage(arguments.file, arguments, console);
  if (request.items.empty()) return PrintAll(message, arguments, console);
  for (const Item& item : request.items) {
    if (request.isChange) {
      item.property->write(message, item.value);
    } else {
      const std::string value = item.property->read(message);
      console.Print((console.IsOutputATerminal() ? Printable(value) : value) + '\n');
    }
  }
  if (request.isChange) SaveChange(message, arguments, console);
  return ExitStatus::kDone;
}

}  // namespace kxmsg
