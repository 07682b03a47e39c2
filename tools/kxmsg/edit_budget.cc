// See edit_budget.h.
#include "kxmsg/edit_budget.h"

#include "kxmsg/failure.h"

#include <string>

namespace kxmsg {

void EditBudget::TakeElements(std::size_t count) {
  if (count > elementsLeft_) {
    RaiseTooMuch("The script adds more than " + std::to_string(elements_) +
                 " elements; --max-elements sets the bound.");
  }
  elementsLeft_ -= count;
}

void EditBudget::TakeValues(std::size_t bytes, std::size_t count) {
  if (count != 0 && bytes > bytesLeft_ / count) {
    RaiseTooMuch("The values that the script gives are longer than " + std::to_string(bytes_) +
                 " bytes together; --max-document-bytes sets the bound.");
  }
  bytesLeft_ -= bytes * count;
}

}  // namespace kxmsg
