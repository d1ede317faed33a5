#pragma once
// Every open and save panel goes through one seam, so that tests can answer them.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace kavor::app {

struct OpenPanelRequest {
  std::string title;
  bool canChooseDirectories = false;
  bool showsHiddenFiles = false;
  // Bundles such as a logarchive are folders the user may enter and pick.
  bool treatsPackagesAsDirectories = false;
  std::vector<std::string> allowedExtensions;  // empty: any file
  bool canChooseFiles = true;                  // false: folders only
  std::filesystem::path directory;             // where the panel opens; empty: where it last was
};

struct SaveType {
  std::string typeName;  // "public.plain-text"
  std::string description;
  std::string extension;  // without the dot
};

struct SavePanelRequest {
  std::string title;
  std::string proposedName;
  std::vector<SaveType> types;  // the first is proposed
  bool canCreateDirectories = true;
};

struct SaveChoice {
  std::filesystem::path path;  // as typed, with the chosen type's extension if it had none
  std::string typeName;
};

class FilePanels {
 public:
  virtual ~FilePanels();
  // None when the user cancels.
  virtual std::optional<std::filesystem::path> runOpenPanel(const OpenPanelRequest& request,
                                                            QWidget* parent) = 0;
  virtual std::optional<SaveChoice> runSavePanel(const SavePanelRequest& request,
                                                 QWidget* parent) = 0;
};

class DialogFilePanels final : public FilePanels {
 public:
  std::optional<std::filesystem::path> runOpenPanel(const OpenPanelRequest& request,
                                                    QWidget* parent) override;
  std::optional<SaveChoice> runSavePanel(const SavePanelRequest& request, QWidget* parent) override;
};

}  // namespace kavor::app
