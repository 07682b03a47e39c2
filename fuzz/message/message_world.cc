// See message_world.h.
#include "message_world.h"

#include "platform/host/memory/memory_host.h"
#include "platform/settings/memory_settings_store.h"
#include "platform/settings/process_settings.h"

#include <memory>
#include <utility>

namespace kx::fuzz {

namespace {

constexpr const char* kOrder = R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data"
    xmlns:dt="urn:schemas-microsoft-com:datatypes">
  <AttributeType name="no" required="yes"/>
  <AttributeType name="state" dt:type="enumeration" dt:values="new old" default="new"/>
  <ElementType name="Qty" content="textOnly" dt:type="int"/>
  <ElementType name="Price" content="textOnly" dt:type="fixed.14.4"/>
  <ElementType name="Day" content="textOnly" dt:type="date"/>
  <ElementType name="Data" content="textOnly" dt:type="bin.base64"/>
  <ElementType name="Note" content="textOnly"/>
  <ElementType name="Remark" content="mixed"><element type="Note" minOccurs="0" maxOccurs="*"/>
  </ElementType>
  <ElementType name="Item" content="eltOnly" model="closed">
    <attribute type="no"/>
    <element type="Qty"/><element type="Price" minOccurs="0"/>
    <element type="Note" minOccurs="0" maxOccurs="*"/>
  </ElementType>
  <ElementType name="Order" content="eltOnly" model="closed">
    <attribute type="no"/><attribute type="state"/>
    <element type="Item" maxOccurs="*"/><element type="Day" minOccurs="0"/>
    <element type="Data" minOccurs="0"/><element type="Remark" minOccurs="0" maxOccurs="*"/>
  </ElementType>
</Schema>)";

constexpr const char* kCommon = R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data">
  <ElementType name="Any" content="mixed" model="open"/>
</Schema>)";

}  // namespace

const runtime::Counted<const core::Environment>& MessageWorld() {
  static host::MemoryHost host;
  static const runtime::Counted<const core::Environment> environment = [] {
    auto settings = std::make_unique<settings::MemorySettingsStore>();
    settings->SetApplicationName(settings::kApplicationName);
    settings->Write("SchemaPath", "c:\\s\\");  // as new namespaces are written
    settings->Write("MsgPath", "C:\\m\\");
    static_cast<void>(settings::ReplaceProcessSettings(std::move(settings)));
    host.SetEnvironment("KX_DRIVE_C", "/c");
    host.Memory().AddFolder("/c/m");
    host.Memory().AddFile("/c/s/order.xdr", kOrder);
    host.Memory().AddFile("/c/s/common.xdr", kCommon);
    return runtime::MakeCounted<const core::Environment>(host, Options{});
  }();
  return environment;
}

}  // namespace kx::fuzz
