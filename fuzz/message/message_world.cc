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

// Rich in what editing asks for: groups, occurrences, attributes of all kinds, open and closed.
constexpr const char* kEdit = R"(<Schema xmlns="urn:schemas-microsoft-com:xml-data"
    xmlns:dt="urn:schemas-microsoft-com:datatypes">
  <AttributeType name="no" required="yes"/>
  <AttributeType name="state" dt:type="enumeration" dt:values="new old" default="new"/>
  <AttributeType name="hue" dt:type="enumeration" dt:values="red  green"/>
  <AttributeType name="size" dt:type="int"/>
  <AttributeType name="flag" dt:type="boolean" default="0"/>
  <AttributeType name="word" dt:type="nmtoken"/>
  <AttributeType name="fixed" required="yes" default="1.0"/>
  <ElementType name="A" content="textOnly"><attribute type="size"/><attribute type="hue"/>
  </ElementType>
  <ElementType name="B" content="empty"><attribute type="flag"/><attribute type="word"/>
  </ElementType>
  <ElementType name="C" content="textOnly" dt:type="int"/>
  <ElementType name="D" content="eltOnly" model="closed"><attribute type="fixed"/>
    <attribute type="size" required="yes"/>
    <element type="A"/><element type="B" minOccurs="0" maxOccurs="*"/></ElementType>
  <ElementType name="One" content="eltOnly"><element type="D" maxOccurs="1"/></ElementType>
  <ElementType name="Bare"/>
  <ElementType name="Alternatives" content="eltOnly" order="many" model="open">
    <attribute type="state"/><attribute type="hue"/>
    <AttributeType name="hue" dt:type="nmtokens"/>
    <group minOccurs="0"><element type="A"/><element type="B" minOccurs="0"/></group>
    <group minOccurs="0"><element type="C" maxOccurs="*"/>
      <group minOccurs="0"><element type="Bare"/></group></group>
    <group minOccurs="0"><element type="D" minOccurs="0"/><element type="A" minOccurs="0"/>
    </group>
    <element type="Bare" minOccurs="0"/><element type="One" minOccurs="0" maxOccurs="2"/>
  </ElementType>
  <ElementType name="Free" content="mixed" model="open"><attribute type="word"/>
    <element type="A" minOccurs="0" maxOccurs="*"/>
    <element type="Free" minOccurs="0" maxOccurs="*"/></ElementType>
  <ElementType name="Root" content="eltOnly" order="many">
    <attribute type="no"/><attribute type="state"/><attribute type="hue"/>
    <attribute type="size"/><attribute type="flag"/><attribute type="word"/>
    <attribute type="fixed"/>
    <element type="Alternatives" maxOccurs="*"/><element type="Free" minOccurs="0"/>
    <element type="One" minOccurs="0" maxOccurs="*"/><element type="D" maxOccurs="*"/>
    <element type="C" minOccurs="0" maxOccurs="1"/><element type="Root" minOccurs="0"/>
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
    host.Memory().AddFile("/c/s/edit.xdr", kEdit);
    host.Memory().AddFile("/c/s/common.xdr", kCommon);
    return runtime::MakeCounted<const core::Environment>(host, Options{});
  }();
  return environment;
}

}  // namespace kx::fuzz
