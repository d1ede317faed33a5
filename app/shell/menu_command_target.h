#pragma once
// A window's content controller that performs menu commands itself while its window is in
// front, as a responder chain would reach it before the main window's controller.

#include "app/shell/main_menu.h"

namespace kavor::app {

class MenuCommandTarget {
 public:
  virtual ~MenuCommandTarget() = default;
  virtual bool handlesMenuCommand(MenuCommand command) const = 0;
  virtual void performMenuCommand(MenuCommand command) = 0;
};

}  // namespace kavor::app
