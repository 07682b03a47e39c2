// Binding and validation. See rows.h.
#include "peers.h"
#include "platform/dom/document_data.h"
#include "platform/dom/parser.h"
#include "platform/xdr/parse_binder.h"
#include "platform/xdr/typing.h"
#include "rows.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kx::bench {

namespace {

std::string ReadSchemaText() {
  std::ifstream file(KX_BENCH_SCHEMAS "/order.xdr", std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) throw std::runtime_error("cannot read the schema");
  return text.str();
}

/// The one schema of all orders, as text.
class OrderSource final : public xdr::SchemaSource {
 public:
  [[nodiscard]] xdr::SchemaText Read(std::string_view location,
                                     std::string_view /*base*/) const override {
    xdr::SchemaText text;
    text.bytes = text_;
    text.url = location;
    return text;
  }

 private:
  std::string text_ = ReadSchemaText();
};

xdr::LoadedGroup Compile(const OrderSource& source) {
  xdr::LoadedGroup loaded =
      xdr::PlainProvider(source).Load("x-schema:order.xdr", std::string_view());
  if (!loaded.group)
    throw std::runtime_error("the library refuses the schema: " + loaded.error.reason);
  return loaded;
}

/// Compiled before, not looked at again.
class CompiledOrders final : public xdr::SchemaProvider {
 public:
  [[nodiscard]] xdr::LoadedGroup Load(std::string_view /*uri*/,
                                      std::string_view /*base*/) const override {
    return loaded_;
  }

 private:
  OrderSource source_;
  xdr::LoadedGroup loaded_ = Compile(source_);
};

std::unique_ptr<dom::DocumentData> LoadBound(const CompiledOrders& orders, std::string_view text) {
  auto data = std::make_unique<dom::DocumentData>(nullptr);
  xdr::ParseBinder binder(orders, nullptr, xdr::Task::kBindAndCheck, {});
  dom::ParseOptions options;
  options.binder = &binder;
  dom::ParseError error;
  if (!dom::ParseText(*data, text, options, error)) {
    throw std::runtime_error("the library refuses the text: " + error.reason);
  }
  return data;
}

class Bind : public Task {
 public:
  explicit Bind(const Workload& workload) : texts_(workload.texts) {}
  std::uint64_t Run(std::size_t text) override {
    return LoadBound(orders_, texts_[text])->NodeCount();
  }

 private:
  const std::vector<std::string>& texts_;
  CompiledOrders orders_;
};

class Validate : public Task {
 public:
  explicit Validate(const Workload& workload) {
    for (const std::string& text : workload.texts) documents_.push_back(LoadBound(orders_, text));
  }
  std::uint64_t Run(std::size_t text) override {
    if (xdr::ValidateBound(*documents_[text]))
      throw std::runtime_error("the library finds it invalid");
    return 0;
  }

 private:
  CompiledOrders orders_;
  std::vector<std::unique_ptr<dom::DocumentData>> documents_;
};

class CompileSchema : public Task {
 public:
  std::uint64_t Run(std::size_t /*text*/) override {
    return Compile(source_).group->members.size();
  }

 private:
  OrderSource source_;
};

std::vector<Entrant> EnterBind(const Workload& workload) {
  std::vector<Entrant> entrants;
  entrants.push_back({"ours", std::make_unique<Bind>(workload)});
  entrants.push_back({"pugixml", PugixmlParse(workload)});
  entrants.push_back({"libxml2", Libxml2ParseAndValidate(workload)});
  return entrants;
}

std::vector<Entrant> EnterValidate(const Workload& workload) {
  std::vector<Entrant> entrants;
  entrants.push_back({"ours", std::make_unique<Validate>(workload)});
  entrants.push_back({"libxml2", Libxml2Validate(workload)});
  return entrants;
}

std::vector<Entrant> EnterSchema(const Workload& /*workload*/) {
  std::vector<Entrant> entrants;
  entrants.push_back({"ours", std::make_unique<CompileSchema>()});
  entrants.push_back({"libxml2", Libxml2CompileSchema()});
  return entrants;
}

}  // namespace

std::vector<Row> XdrRows() {
  const std::vector<std::string> all = {"1k", "10k", "100k", "1m", "10m", "wide", "deep"};
  return {
      {"bind", all, EnterBind}, {"validate", all, EnterValidate}, {"schema", {"1k"}, EnterSchema}};
}

}  // namespace kx::bench
