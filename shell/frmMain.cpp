#include "shell/frmMain.h"

#include <algorithm>
#include <array>
#include <cctype>

#include <wx/sizer.h>

#include "firmware/frmDownload.h"
#include "link/port_set.h"
#include "radiodb/frmSpecification.h"
#include "services/messages.h"
#include "services/resource_ids.h"
#include "upgrade/frmAutomaticUpgrade.h"
#include "upgrade/frmUpgrade.h"

namespace zep::shell {
namespace {

using services::NLSFmt;
using services::NLSText;
using services::ToWx;

constexpr int kTreeWidth = 170;

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(),
                         [](unsigned char character) { return std::tolower(character); });
  return lower;
}

struct TaskKey {
  std::string_view key;
  Task task;
  int caption;  // string table number
};
constexpr std::array kTasks = {
    TaskKey{NLSText("Specifications"), Task::kSpecification, services::kResWindowSpecification},
    TaskKey{NLSText("Upgrade"), Task::kUpgrade, services::kResWindowUpgrade},
    TaskKey{NLSText("Download"), Task::kDownload, services::kResWindowDownload},
};

// The frame of a task window. It is no window of the screen's, which the toolkit forgets when it is
// realized.
class TaskFrame : public wxAuiMDIChildFrame {
 public:
  using wxAuiMDIChildFrame::wxAuiMDIChildFrame;
#ifdef __WXGTK__
  void GTKHandleRealized() override {}
#endif
};

// A node of the tree knows its key, whatever its text says.
class NodeKey : public wxTreeItemData {
 public:
  explicit NodeKey(std::string_view text) : key(text) {}
  const std::string key;
};

// Whether the tree offers the automatic upgrade: the suite's other families have it.
bool OffersUpgrade(const services::Session& session) {
  const std::string identity = LowerCase(session.strings.Get(services::kResIdentity));
  return identity == "torvik" || identity == "vorn pmr ii";
}

bool IsZep(const services::Session& session) {
  return LowerCase(session.strings.Get(services::kResIdentity)) == "zep";
}

}  // namespace

frmMain::frmMain(wxAuiMDIParentFrame* frame, Application& application)
    : wxPanel(frame, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "frmMain"),
      application_(application),
      frame_(frame) {
  TreeView1 = new wxTreeCtrl(
      this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(kTreeWidth, -1)),
      wxTR_HIDE_ROOT | wxTR_NO_LINES | wxTR_FULL_ROW_HIGHLIGHT | wxTR_SINGLE | wxBORDER_NONE);
  lblHighSpeedMode = services::MakeLabel(this, "", "lblHighSpeedMode");
  lblHighSpeedMode->Show(application.session.high_speed);
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(TreeView1, wxSizerFlags(1).Expand());
  rows->Add(lblHighSpeedMode, wxSizerFlags().Border(wxALL, services::Gap(this)));
  SetSizerAndFit(rows);

  TreeView1->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) {
    event.Skip();
    int where = 0;
    const wxTreeItemId node = TreeView1->HitTest(event.GetPosition(), where);
    if (node.IsOk()) CallAfter([this, node] { TreeView1_NodeClick(node); });
  });
  TreeView1->Bind(wxEVT_TREE_KEY_DOWN, &frmMain::TreeView1_KeyPress, this);
}

void frmMain::Form_Load() {
  link::Link& link = application_.link;
  if (application_.session.high_speed) InitHighSpeedCard(link);
  SelectInputMode(link, link.CommStates, platform::InputMode::kText);
  UpdateTreeView();
  OpenForm("Specifications");
}

void frmMain::UpdateTreeView() {
  const services::Session& session = application_.session;
  TreeView1->DeleteAllItems();
  const wxTreeItemId root = TreeView1->AddRoot("");
  const auto add = [&](std::string_view key) {
    TreeView1->AppendItem(root, ToWx(NLSFmt(session, key)), -1, -1, new NodeKey(key));
  };
  application_.ShowAdvanced = true;
  if (LowerCase(session.strings.Get(services::kResAskForAdvanced)) == "true") {
    const services::Settings& settings = session.settings;
    const std::string value =
        LowerCase(settings.AppGetUserSetting(settings.OwnType(), "ShowAdvanced", "0"));
    application_.ShowAdvanced =
        value == "true" || settings.AppGetUserNumber(settings.OwnType(), "ShowAdvanced", 0) != 0;
  }
  add("Specifications");
  if (OffersUpgrade(session)) add("Upgrade");
  if (application_.ShowAdvanced) add("Download");
  wxTreeItemIdValue cookie;
  TreeView1->SelectItem(TreeView1->GetFirstChild(root, cookie));
  lblHighSpeedMode->SetLabelText(ToWx(NLSFmt(session, "High-speed mode")));
  services::NameControl(TreeView1, "TreeView1", NLSFmt(session, "Tasks"));
}

void frmMain::OpenForm(std::string_view key) {
  const auto* entry = std::ranges::find_if(
      kTasks, [&](const TaskKey& task) { return LowerCase(task.key) == LowerCase(key); });
  if (entry == kTasks.end() || !CloseForm()) return;
  const std::string& caption = application_.session.strings.Get(entry->caption);
  SelectNode(entry->key);
  child_ = new TaskFrame;
  child_->Create(frame_, wxID_ANY, ToWx(NLSFmt(application_.session, caption)));
  LeaveTabOrder();
  task_ = MakeTaskWindow(child_, entry->task);
  auto* whole = new wxBoxSizer(wxVERTICAL);
  whole->Add(task_, wxSizerFlags(1).Expand());
  child_->SetSizer(whole);
  child_->Layout();
  child_->Show();
  application_.current_task = entry->task;
  task_->FocusFirst();
}

// The frames around the task window would catch the Tab key.
void frmMain::LeaveTabOrder() {
  wxWindow* notebook = child_->GetParent();
  child_->SetCanFocus(false);
  notebook->SetCanFocus(false);
  for (wxWindow* strip : notebook->GetChildren()) {
    if (dynamic_cast<wxAuiTabCtrl*>(strip) != nullptr) strip->SetCanFocus(false);
  }
}

// Nothing is selected for a task that the tree does not offer.
void frmMain::SelectNode(std::string_view key) {
  TreeView1->UnselectAll();
  wxTreeItemIdValue cookie;
  const wxTreeItemId root = TreeView1->GetRootItem();
  for (wxTreeItemId node = TreeView1->GetFirstChild(root, cookie); node.IsOk();
       node = TreeView1->GetNextChild(root, cookie)) {
    const auto* data = dynamic_cast<const NodeKey*>(TreeView1->GetItemData(node));
    if (data != nullptr && data->key == key) TreeView1->SelectItem(node);
  }
}

services::TaskWindow* frmMain::MakeTaskWindow(wxWindow* parent, Task task) {
  Application& application = application_;
  switch (task) {
    case Task::kDownload:
      return new firmware::frmDownload(parent, application.context, application.link,
                                       application.firmware, application.radio);
    case Task::kUpgrade:
      if (IsZep(application.session)) {
        return new upgrade::frmUpgrade(parent, application.context, application.link,
                                       application.firmware, application.radio);
      }
      return new upgrade::frmAutomaticUpgrade(parent, application.context, application.link,
                                              application.firmware, application.radio);
    case Task::kNone:
    case Task::kSpecification:
      break;
  }
  return new radiodb::frmSpecification(parent, application.context, application.link,
                                       application.radio);
}

bool frmMain::CloseForm() {
  if (task_ != nullptr && !task_->MayClose()) return false;
  application_.current_task = Task::kNone;
  // At once, so that the next window finds the settings that this one stores. Its frame follows
  // when the toolkit can do without it.
  if (task_ != nullptr) task_->Destroy();
  task_ = nullptr;
  if (child_ != nullptr) child_->Destroy();
  child_ = nullptr;
  if (!IsBeingDeleted()) TreeView1->SetFocus();
  return true;
}

void frmMain::ShowLanguage() {
  const Task task = application_.current_task;
  UpdateTreeView();
  for (const TaskKey& entry : kTasks) {
    if (entry.task == task) OpenForm(entry.key);
  }
}

void frmMain::TreeView1_NodeClick(const wxTreeItemId& node) {
  const auto* data = dynamic_cast<const NodeKey*>(TreeView1->GetItemData(node));
  if (data != nullptr) OpenForm(std::string(data->key));
}

void frmMain::TreeView1_KeyPress(wxTreeEvent& event) {
  const int key = event.GetKeyCode();
  const bool opens = key == WXK_RETURN || key == WXK_NUMPAD_ENTER || key == WXK_SPACE;
  if (!opens) {
    event.Skip();
    return;
  }
  if (const wxTreeItemId node = TreeView1->GetSelection(); node.IsOk()) TreeView1_NodeClick(node);
}

}  // namespace zep::shell
