#pragma once
// The interface definition's registry: a window controller made from its identifier, with its
// window laid out from the Designer form and the shared menus in its menu bar.

#include <memory>
#include <string_view>

namespace kavor::app {

class AppContext;
class WindowController;

// None for an identifier the interface does not define, which is a fault of the caller.
std::unique_ptr<WindowController> instantiateWindowController(std::string_view identifier,
                                                              AppContext& app);

}  // namespace kavor::app
