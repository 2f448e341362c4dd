// The main window's left side: the task tree. Choosing a task opens its window beside the tree; one
// task window is open at a time.
#pragma once

#include <string>
#include <string_view>

#include <wx/aui/aui.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/treectrl.h>

#include "services/window_kit_ui.h"
#include "shell/application.h"

namespace zep::shell {

class frmMain : public wxPanel {
 public:
  // The frame takes the task windows as its children.
  frmMain(wxAuiMDIParentFrame* frame, Application& application);

  // Makes the port states known, fills the tree and opens the first task.
  void Form_Load();

  // Clears and refills the task tree and selects the first node.
  void UpdateTreeView();

  // Opens the task window of a node ("Specifications", "Download", "Upgrade", in any case) in place
  // of the one that is open. Nothing happens while a job runs.
  void OpenForm(std::string_view key);
  // Closes the open task window, if any. False while a job runs.
  bool CloseForm();

  // The open task window; null when there is none.
  services::TaskWindow* TaskForm() const { return task_; }
  void FocusTree() { TreeView1->SetFocus(); }
  bool HasTreeFocus() const { return TreeView1->HasFocus(); }

  // The texts in the language that is set now; the open task is opened anew.
  void ShowLanguage();

 private:
  void TreeView1_NodeClick(const wxTreeItemId& node);
  void TreeView1_KeyPress(wxTreeEvent& event);
  void LeaveTabOrder();
  void SelectNode(std::string_view key);
  services::TaskWindow* MakeTaskWindow(wxWindow* parent, Task task);

  Application& application_;
  wxAuiMDIParentFrame* frame_ = nullptr;
  wxAuiMDIChildFrame* child_ = nullptr;
  services::TaskWindow* task_ = nullptr;

  wxTreeCtrl* TreeView1;
  wxStaticText* lblHighSpeedMode = nullptr;
};

}  // namespace zep::shell
