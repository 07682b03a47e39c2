// The verdicts of mono's validator: one line a case, "number valid", "number invalid: why" or
// "number schema: why".
using System;
using System.IO;
using System.Xml;
using System.Xml.Schema;

static class MonoVerdicts {
  static string Judge(string schema, string document) {
    var schemas = new XmlSchemaCollection();
    try {
      schemas.Add("urn:case", new XmlTextReader(new StringReader(schema)));
    } catch (Exception error) {
      return "schema: " + error.Message;
    }
    string verdict = "valid";
    try {
      var reader = new XmlValidatingReader(new XmlTextReader(new StringReader(document)));
      reader.ValidationType = ValidationType.XDR;
      reader.Schemas.Add(schemas);
      reader.ValidationEventHandler += (sender, args) => {
        if (verdict == "valid" && args.Severity == XmlSeverityType.Error) {
          verdict = "invalid: " + args.Message;
        }
      };
      while (reader.Read()) {
      }
    } catch (Exception error) {
      verdict = "invalid: " + error.Message;
    }
    return verdict;
  }

  static void Main(string[] arguments) {
    string[] parts = File.ReadAllText(arguments[0]).Split(new[] {"=== "}, StringSplitOptions.None);
    for (int i = 1; i < parts.Length; ++i) {
      int line = parts[i].IndexOf('\n');
      int middle = parts[i].IndexOf("\n---\n");
      string schema = parts[i].Substring(line + 1, middle - line - 1);
      string document = parts[i].Substring(middle + 5).TrimEnd('\n');
      string verdict = Judge(schema, document).Replace("\r", " ").Replace("\n", " ");
      Console.WriteLine(parts[i].Substring(0, line) + " " + verdict);
    }
  }
}
