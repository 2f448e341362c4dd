#include "services/window_kit_ui.h"

#include <algorithm>
#include <utility>

#include <wx/app.h>
#include <wx/clipbrd.h>
#include <wx/display.h>
#include <wx/settings.h>
#ifdef __WXGTK__
#include <gtk/gtk.h>
#endif

#include "services/messages.h"

namespace zep::services {
namespace {

constexpr int kGap = 8;
constexpr int kMargin = 12;
constexpr int kScrollStep = 10;

// The label with its mnemonic at another letter, which is taken then: "&Copy" becomes "C&opy".
// Where the letter is written behind the text, as in Chinese, "(&C)", it is replaced by any that is
// free.
wxString WithFreeMnemonic(const wxString& label, std::set<wxChar>& taken) {
  const int at = label.Find('&');
  wxString text = label;
  text.erase(static_cast<std::size_t>(at), 1);
  if (label.Find("(&") != wxNOT_FOUND) {
    for (wxChar letter = 'A'; letter <= 'Z'; ++letter) {
      if (!taken.insert(letter).second) continue;
      text[static_cast<std::size_t>(at)] = letter;
      return text.insert(static_cast<std::size_t>(at), "&");
    }
    return text;
  }
  for (std::size_t place = 0; place < text.size(); ++place) {
    const wxChar letter = wxToupper(text[place]);
    if (letter >= 'A' && letter <= 'Z' && taken.insert(letter).second)
      return text.insert(place, "&");
  }
  return text;
}

}  // namespace

wxString ToWx(std::string_view utf8) { return wxString::FromUTF8(utf8.data(), utf8.size()); }

std::string FromWx(const wxString& text) { return text.utf8_string(); }

int Gap(const wxWindow* window) { return window->FromDIP(kGap); }

void NameControl(wxWindow* control, const char* name, std::string_view spoken_name) {
  control->SetName(name);
  if (spoken_name.empty()) return;
  wxString spoken = ToWx(spoken_name);
  spoken.Replace("&", "");
#ifdef __WXGTK__
  AtkObject* accessible = gtk_widget_get_accessible(control->GetHandle());
  if (accessible != nullptr) atk_object_set_name(accessible, spoken.utf8_str());
#else
  // Other toolkits take the label in front of the control.
#endif
}

wxButton* MakeButton(wxWindow* parent, std::string_view label, const char* name,
                     std::function<void()> on_click, wxWindowID id) {
  auto* button = new wxButton(parent, wxID_ANY, ToWx(label));
  // Not before: a label that the toolkit knows for the id would be replaced by one in the language
  // of the computer.
  if (id != wxID_ANY) button->SetId(id);
  NameControl(button, name);
  button->Bind(wxEVT_BUTTON, [action = std::move(on_click)](wxCommandEvent&) { action(); });
  return button;
}

wxCheckBox* MakeCheckBox(wxWindow* parent, std::string_view label, const char* name) {
  auto* box = new wxCheckBox(parent, wxID_ANY, ToWx(label));
  NameControl(box, name);
  return box;
}

wxStaticText* MakeLabel(wxWindow* parent, std::string_view label, const char* name) {
  auto* text = new wxStaticText(parent, wxID_ANY, ToWx(label));
  NameControl(text, name);
  return text;
}

wxTextCtrl* MakeTextBox(wxWindow* parent, const char* name, std::string_view spoken_name,
                        long style) {
  auto* box = new wxTextCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, style);
  NameControl(box, name, spoken_name);
  return box;
}

wxSizer* ButtonRow(wxWindow* parent, std::initializer_list<wxButton*> buttons) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->AddStretchSpacer();
  for (wxButton* button : buttons) row->Add(button, wxSizerFlags().Border(wxLEFT, Gap(parent)));
  return row;
}

wxFlexGridSizer* LabelGrid(wxWindow* parent, int columns, int growing_column) {
  auto* grid = new wxFlexGridSizer(columns, Gap(parent), Gap(parent));
  grid->AddGrowableCol(static_cast<std::size_t>(growing_column));
  return grid;
}

void SetHelpPage(wxWindow* window, const WindowContext& context, const std::string& page) {
  window->Bind(wxEVT_CHAR_HOOK, [&context, page](wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_F1 && !event.HasAnyModifiers()) {
      WindowContext::Call(context.show_help, page);
    } else {
      event.Skip();
    }
  });
}

wxButton* MakeHelpButton(wxWindow* parent, const WindowContext& context, const std::string& page) {
  return MakeButton(parent, NLSFmt(context.session, "&Help"), "cmdHelp",
                    [&context, page] { WindowContext::Call(context.show_help, page); });
}

wxSizer* OkCancelHelpRow(wxDialog* dialog, const WindowContext& context, const std::string& page,
                         std::function<void()> on_ok) {
  wxButton* ok =
      MakeButton(dialog, NLSFmt(context.session, "&OK"), "cmdOk", std::move(on_ok), wxID_OK);
  wxButton* cancel = MakeButton(
      dialog, NLSFmt(context.session, "&Cancel"), "cmdCancel",
      [dialog] { dialog->EndModal(wxID_CANCEL); }, wxID_CANCEL);
  ok->SetDefault();
  dialog->SetEscapeId(wxID_CANCEL);
  return ButtonRow(dialog, {ok, cancel, MakeHelpButton(dialog, context, page)});
}

wxChar MnemonicOf(const wxString& label) {
  for (std::size_t at = 0; at + 1 < label.size(); ++at) {
    if (label[at] != '&') continue;
    if (label[at + 1] != '&') return wxToupper(label[at + 1]);
    ++at;  // "&&" shows an ampersand
  }
  return 0;
}

void SpreadMnemonics(wxWindow* window, std::set<wxChar>& taken) {
  for (wxWindow* child : window->GetChildren()) {
    const wxString label = child->GetLabel();
    const wxChar letter = MnemonicOf(label);
    if (letter != 0 && !taken.insert(letter).second)
      child->SetLabel(WithFreeMnemonic(label, taken));
    SpreadMnemonics(child, taken);
  }
}

void SetContents(wxWindow* window, wxSizer* contents) {
  auto* margin = new wxBoxSizer(wxVERTICAL);
  margin->Add(contents, wxSizerFlags(1).Expand().Border(wxALL, window->FromDIP(kMargin)));
  window->SetSizer(margin);
}

void FitToScreen(wxTopLevelWindow* window) {
  window->GetSizer()->Fit(window);
  const wxSize screen = wxDisplay(DialogParent()).GetClientArea().GetSize();
  wxSize size = window->GetSize();
  window->SetMinSize({std::min(size.x, screen.x), std::min(size.y, screen.y)});
  size.DecTo(screen);
  window->SetSize(size);
  window->CentreOnParent();
}

bool CopyText(std::string_view text) {
  const wxClipboardLocker clipboard;
  // Without Flush() the text would go with the program.
  return !!clipboard && wxTheClipboard->SetData(new wxTextDataObject(ToWx(text))) &&
         wxTheClipboard->Flush();
}

void StandBesideDialogs(wxTopLevelWindow* frame) {
#ifdef __WXGTK__
  // A modal dialog takes the input of all windows of its group.
  GtkWindowGroup* group = gtk_window_group_new();
  gtk_window_group_add_window(group, GTK_WINDOW(frame->GetHandle()));
  g_object_unref(group);
#endif
  // Else it could not be closed while a dialog is open.
  frame->SetExtraStyle(frame->GetExtraStyle() | wxTOPLEVEL_EX_DIALOG);
}

#ifdef __WXGTK__
namespace {

// Message boxes and file dialogs are the toolkit's own, which stand above all else. Null when none
// is open.
GtkDialog* NativeDialog() {
  GtkDialog* native = nullptr;
  GList* windows = gtk_window_list_toplevels();
  for (const GList* node = windows; node != nullptr; node = node->next) {
    const bool is_native =
        GTK_IS_MESSAGE_DIALOG(node->data) || GTK_IS_FILE_CHOOSER_DIALOG(node->data);
    if (is_native && gtk_widget_get_visible(GTK_WIDGET(node->data)))
      native = GTK_DIALOG(node->data);
  }
  g_list_free(windows);
  return native;
}

}  // namespace
#endif

bool HasModalDialog(const Session& session) {
#ifdef __WXGTK__
  if (NativeDialog() != nullptr) return true;
#endif
  return session.open_questions > 0 || dynamic_cast<wxDialog*>(DialogParent()) != nullptr;
}

bool CloseModalDialog() {
#ifdef __WXGTK__
  if (GtkDialog* native = NativeDialog()) {
    gtk_dialog_response(native, GTK_RESPONSE_DELETE_EVENT);
    return true;
  }
#endif
  auto* dialog = dynamic_cast<wxDialog*>(DialogParent());
  if (dialog == nullptr) return false;
  dialog->Close(true);
  return true;
}

wxWindow* DialogParent() {
  for (auto node = wxTopLevelWindows.GetLast(); node != nullptr; node = node->GetPrevious()) {
    const auto* dialog = dynamic_cast<wxDialog*>(node->GetData());
    if (dialog != nullptr && dialog->IsModal()) return node->GetData();
  }
  return wxTheApp->GetTopWindow();
}

TaskWindow::TaskWindow(wxWindow* parent, WindowContext& window_context, const char* name,
                       const std::string& help_page)
    : wxScrolledWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                       wxTAB_TRAVERSAL | wxVSCROLL | wxHSCROLL, name),
      context(window_context) {
  SetScrollRate(FromDIP(kScrollStep), FromDIP(kScrollStep));
  SetHelpPage(this, context, help_page);
  // Escape is the Cancel button, as in a dialog.
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
    auto* cancel = dynamic_cast<wxButton*>(FindWindowByName("cmdCancel", this));
    if (event.GetKeyCode() != WXK_ESCAPE || cancel == nullptr || !cancel->IsEnabled()) {
      event.Skip();
      return;
    }
    wxCommandEvent press(wxEVT_BUTTON, cancel->GetId());
    press.SetEventObject(cancel);
    cancel->ProcessWindowEvent(press);
  });
}

void TaskWindow::FocusFirst() {
  if (first_focus != nullptr) {
    first_focus->SetFocus();
  } else {
    SetFocus();
  }
}

wxButton* TaskWindow::MakeCancelButton() {
  return MakeButton(this, NLSFmt(context.session, "&Cancel"), "cmdCancel", [this] {
    if (context.session.jobs.IsRunning()) {
      context.session.jobs.Cancel();
    } else {
      WindowContext::Call(context.close_task);
    }
  });
}

void TaskWindow::SetContents(wxSizer* contents) {
  services::SetContents(this, contents);
  std::set<wxChar> taken = context.menu_letters;
  SpreadMnemonics(this, taken);
  FitInside();
}

}  // namespace zep::services
