// All of the library's public surface.
#pragma once

#include "kxmessage/attribute.h"         // IWYU pragma: export
#include "kxmessage/attribute_info.h"    // IWYU pragma: export
#include "kxmessage/attributes.h"        // IWYU pragma: export
#include "kxmessage/element.h"           // IWYU pragma: export
#include "kxmessage/element_info.h"      // IWYU pragma: export
#include "kxmessage/error.h"             // IWYU pragma: export
#include "kxmessage/error_codes.h"       // IWYU pragma: export
#include "kxmessage/found_elements.h"    // IWYU pragma: export
#include "kxmessage/message.h"           // IWYU pragma: export
#include "kxmessage/options.h"           // IWYU pragma: export
#include "kxmessage/parse_error.h"       // IWYU pragma: export
#include "kxmessage/schema.h"            // IWYU pragma: export
#include "kxmessage/settings.h"          // IWYU pragma: export
#include "kxmessage/text.h"              // IWYU pragma: export
#include "kxmessage/valid_attributes.h"  // IWYU pragma: export
#include "kxmessage/valid_elements.h"    // IWYU pragma: export
#include "kxmessage/variant.h"           // IWYU pragma: export
