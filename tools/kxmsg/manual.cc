// See manual.h.
#include "kxmsg/manual.h"

namespace kxmsg {

namespace {

constexpr Example kNewExamples[] = {
    {"kxmsg new order.xdr", "prints a new order with all that its schema demands"},
    {"kxmsg new --root Item order.xdr -o item.xml", "makes the file item.xml of one item"},
    {"kxmsg new --base Order -o Today", "takes the schema from SchemaPath, writes to MsgPath"},
};

constexpr Example kCheckExamples[] = {
    {"kxmsg check order.xml", "says whether the order is good, and where it is not"},
    {"kxmsg check --jobs 0 --quiet in/*.xml", "names the bad ones, with all processors"},
    {"curl -s http://localhost/order | kxmsg check --json -", "checks what another program gives"},
};

constexpr Example kShowExamples[] = {
    {"kxmsg show order.xml", "shows the tree"},
    {"kxmsg show --color always order.xml | less -R", "keeps the colours in a pager"},
};

constexpr Example kGetExamples[] = {
    {"kxmsg get order.xml Header/Customer", "prints the customer"},
    {"kxmsg get --xml order.xml \"Items/Item[Quantity > 10]\"", "prints the elements themselves"},
    {"kxmsg get order.xml Items/Item/@sku", "prints the attribute of every item"},
};

constexpr Example kSetExamples[] = {
    {"kxmsg set order.xml Header/Customer \"Harbour Lights\"", "changes the file"},
    {"kxmsg set order.xml Header/Rush 1 -o rush.xml", "leaves it, and writes another"},
    {"kxmsg set --create order.xml Items/Item/@gift 1", "gives every item the attribute"},
    {"kxmsg new order.xdr | kxmsg set - Header/Customer \"Harbour Lights\" > order.xml",
     "works in a pipe"},
};

constexpr Example kEditExamples[] = {
    {"kxmsg edit order.xml changes.txt", "makes the changes of a script"},
    {"kxmsg edit order.xml -e \"add Items Item\" -e \"set Items/Item[end()]/Quantity 4\"",
     "makes two, the second in what the first one added"},
    {"kxmsg edit - -e \"remove Items/Item[Quantity = 0]\" < order.xml > less.xml",
     "works in a pipe"},
};

constexpr Term kEditTerms[] = {
    {"add PATTERN [NAME [VALUE]]",
     "Adds a child NAME, with all that its schema demands, to each element found, behind all its "
     "other children, and gives it VALUE. Without NAME the only child that is declared is meant."},
    {"set PATTERN VALUE",
     "Gives each element found a value. Where PATTERN ends in /@NAME: each attribute that is "
     "there."},
    {"attr PATTERN NAME [VALUE]",
     "Gives each element found the attribute NAME: adds it where it is absent, with its default "
     "unless there is a VALUE, and sets VALUE where it is there."},
    {"remove PATTERN",
     "Removes each element found, the last one first, unless its parent demands it. Where PATTERN "
     "ends in /@NAME: each attribute that is there, unless it is required or has a default."},
    {"group PATTERN NUMBER",
     "Puts in each element found the group of that number, from 1, of its type in the place of the "
     "one that is there: the children of the former go, new ones of the other are added behind all "
     "others."},
};

constexpr std::string_view kEditSample = R"(# One more item, and what it is
add Items Item
set Items/Item[end()]/Description "Storm lantern, 12\""
set Items/Item[end()]/Quantity 4
set Items/Item[end()]/Price 39.50
attr Items/Item[end()] sku LAN-012
add Items/Item[end()] Note 'Handle with care.'
attr Items/Item[@sku = 'BLB-007'] unit each
remove Items/Item/@gift
remove Items/Item[Quantity > 50])";

constexpr Example kSchemaExamples[] = {
    {"kxmsg schema order.xdr", "lists what the schema declares"},
    {"kxmsg schema --json order.xdr", "the same for programs"},
};

constexpr Example kHeaderExamples[] = {
    {"kxmsg header order.xml", "prints the whole header"},
    {"kxmsg header order.xml UniqueID", "prints one property"},
    {"kxmsg header order.xml Tag=seen SubType=urgent", "changes two and writes the file"},
};

constexpr Example kConfigExamples[] = {
    {"kxmsg config", "prints the settings and where they lead"},
    {"kxmsg config SchemaPath", "prints one of them"},
    {"kxmsg config SchemaPath ./schemas", "stores a folder as the base of schemas"},
};

constexpr CommandText kCommands[] = {
    {Command::kNew, "new", "[OPTIONS] SCHEMA", "makes a new message of a schema",
     "Makes a message of the schema SCHEMA: the content root with all children and attributes that "
     "the schema demands, and a header. It goes to standard output unless -o names a file.",
     kNewExamples},
    {Command::kCheck, "check", "[OPTIONS] FILE...", "loads and validates messages",
     "Loads each message, which validates it against its schema. Each file gets one line on "
     "standard output, in the order of the command line: \"FILE: ok\", or "
     "\"FILE:LINE:POSITION: error NUMBER: TEXT\", where LINE and POSITION count from 1 and are "
     "left "
     "out when the failure has no place. The exit status is 1 when one of them is bad.\n"
     "With --json the output is one array of objects: file, ok, and for a bad one number, hex, "
     "source, text, line, position, code, reason and sourceText; long texts are cut.",
     kCheckExamples},
    {Command::kShow, "show", "[OPTIONS] FILE", "shows the tree of a message",
     "Prints one line for each element: its name, its type (elements, mixed, empty, text, or a "
     "data "
     "type), how often it may occur unless that is once, and its value. Declared children that are "
     "not there follow in their parent, marked \"- \", with what they are: optional, alternative "
     "(of "
     "which another one is there), or required. The attributes of an element stand below it, each "
     "with \"@\", its data type where it has one, and its value; those that are declared and not "
     "there are marked as children are. A child that no schema declares, which open content may "
     "have, "
     "is told by its position only. The message is not changed.",
     kShowExamples},
    {Command::kGet, "get", "[OPTIONS] FILE PATTERN", "prints what a pattern finds",
     "Asks the XSL Pattern PATTERN at the content root and prints the text of each element that it "
     "finds, one to a line. A PATTERN that ends in /@NAME prints the values of the attributes that "
     "are there. Finding nothing is the exit status 1.",
     kGetExamples},
    {Command::kSet, "set", "[OPTIONS] FILE PATTERN VALUE", "changes the value of elements",
     "Gives every element that PATTERN finds from the content root the value VALUE, as the "
     "schema types it, and writes the message back. A PATTERN that ends in /@NAME changes "
     "attributes. A regular file is replaced as a whole or not "
     "at all. When one element refuses "
     "the value, or the changed message would not load again, nothing is written.",
     kSetExamples},
    {Command::kEdit, "edit", "[OPTIONS] FILE [SCRIPT]",
     "makes all the changes of a script, or none",
     "Makes the changes that SCRIPT asks for, one command to a line, in their order, and writes "
     "the "
     "message back. The first command that fails ends it with the name of the script, its line and "
     "the position in it, and nothing is written; nor is it when the changed message would not "
     "load "
     "again. The commands of -e stand in the place of SCRIPT.\n"
     "Each PATTERN is asked at the content root, when its command's turn has come; one that finds "
     "nothing is an error. Blanks part the words, and a \"#\" in the place of a word begins a "
     "comment. A PATTERN may have blanks in its brackets. What else has blanks, is empty, or "
     "begins "
     "with \"#\" or a quotation mark is quoted: in '...' everything is as it is written, in "
     "\"...\" there are \\\" \\' \\\\ \\n \\t \\r and, as show prints them, \\x1F and "
     "\\u{20AC}. Scripts are UTF-8, of at most 16 MiB in lines of at most 1 MiB.\n"
     "A command finds at most 1,000,000 elements, and all commands of a run add at most so many, "
     "with the children that come by themselves; --max-elements sets both. The values that they "
     "give, each counted for every element that gets it, are together no longer than a message may "
     "be: --max-document-bytes.",
     kEditExamples, kEditTerms, kEditSample},
    {Command::kSchema, "schema", "[OPTIONS] SCHEMA", "shows what a schema declares",
     "Prints each element type of the schema: content, order and model, data type and lengths, "
     "attributes (\"@\") and children, with how often they occur unless that is once.",
     kSchemaExamples},
    {Command::kHeader, "header", "[OPTIONS] FILE [NAME[=VALUE]]...",
     "prints or changes the header of a message",
     "Without NAME prints all properties as NAME=VALUE, one to a line; with NAME only their "
     "values. "
     "With NAME=VALUE changes properties and writes the message back, as set does. Names are "
     "Version, MsgType, "
     "SubType, Class, Encoding, TimeStamp, UniqueID, SchemaFile, DeliveryOptions, DeliveryResult "
     "and "
     "Tag, in any letter case; TimeStamp, UniqueID and SchemaFile can only be read.",
     kHeaderExamples},
    {Command::kConfig, "config", "[OPTIONS] [NAME [VALUE]]", "prints or changes the settings",
     "Without NAME prints, as NAME=VALUE, the settings SchemaPath and MsgPath and, to be read "
     "only, "
     "SchemaFolder and MsgFolder (the folders of this system that they lead to, empty while they "
     "are not there) and Storage (where "
     "the settings are kept). With VALUE stores a folder or URL as SchemaPath or MsgPath; a "
     "relative folder is one of the current folder.",
     kConfigExamples},
};

constexpr std::string_view kGeneral[] = {
    "Names on the command line are files of the current folder, as with every other program. With "
    "--base they are completed as the library completes locations: messages against MsgPath, "
    "schemas "
    "against SchemaPath, \".xml\" added where there is no extension. URLs (http, https, file) and "
    "paths with a drive letter (C:\\...) mean the same either way. The schemas that a message "
    "names "
    "are looked for under SchemaPath, or under --schema-base, wherever the message itself lies.",
    "\"-\" stands for standard input or output. Input from there is decoded as XML says: by its "
    "byte-order mark, else by the encoding that it declares, else as UTF-8. Output there is UTF-8, "
    "and declares that. Files are read and written by the code page whatever they declare: "
    "windows-1252 unless --code-page says otherwise; a file that declares UTF-8 and holds more "
    "than "
    "ASCII draws a warning then.",
    "Results go to standard output. Errors and warnings go to standard error, one line each, as "
    "\"kxmsg: NAME:LINE:POSITION: error NUMBER: TEXT\"; what has no place has no LINE and "
    "POSITION.",
    "An argument that begins with \"-\" and a letter is an option, unless \"--\" stands before it.",
};

constexpr Term kExitStatus[] = {
    {"0", "All went well."},
    {"1", "A message, schema, script or setting is bad or missing, or a pattern finds nothing."},
    {"2", "The command line, or the value of a KX_ variable, is wrong."},
    {"3", "The result could not be written."},
    {"4", "Memory ran out, or the program has a fault."},
};

constexpr Term kEnvironment[] = {
    {"KX_SETTINGS", "The file that holds SchemaPath and MsgPath."},
    {"KX_DRIVE_A to KX_DRIVE_Z", "The folders that stand for the drives of locations: --drive."},
    {"KX_CODE_PAGE", "As --code-page."},
    {"KX_SCHEMA_BASE, KX_MESSAGE_BASE", "As --schema-base and --message-base."},
    {"KX_ALLOWED_PREFIXES, KX_SCHEMA_FOLDERS",
     "As --allow-prefix and --schema-folder, several separated by \";\"."},
    {"KX_MAX_DOCUMENT_BYTES, KX_MAX_DEPTH, KX_MAX_ENTITY_BYTES, KX_MAX_DEFAULT_ELEMENTS, "
     "KX_MAX_DEFAULT_DEPTH, KX_MAX_SCHEMA_BYTES, KX_MAX_DOWNLOAD_BYTES, KX_DOWNLOAD_SECONDS, "
     "KX_MAX_REDIRECTS",
     "The bounds, as the options of the same names."},
    {"NO_COLOR", "When not empty: no colours unless --color always asks for them."},
};

}  // namespace

std::span<const CommandText> Commands() { return kCommands; }
std::span<const std::string_view> GeneralText() { return kGeneral; }
std::span<const Term> ExitStatusText() { return kExitStatus; }
std::span<const Term> EnvironmentText() { return kEnvironment; }

}  // namespace kxmsg
