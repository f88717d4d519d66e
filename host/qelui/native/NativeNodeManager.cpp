#include "host/qelui/native/NativeNodeManager.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/msgdlg.h>

#include "host/qelui/native/ButtonControl.h"
#include "host/qelui/native/ModalLevel.h"
#include "host/qelui/native/NativeDialog.h"
#include "host/qelui/native/Text.h"
#include "host/qelui/native/WindowHandle.h"
#include "platform/qelcore/Localisation.h"

namespace qelui::native {

namespace {

/// In the form that the system's file dialogs take; nothing when every file is meant.
wxString FilterFor(const OS_FileSaveAsDialog::FileType& fileType) {
  if (fileType.mExtension.empty()) return {};
  const wxString pattern = "*." + ToWx(fileType.mExtension);
  wxString description = ToWx(fileType.mDescription);
  // A line divides the parts of a filter.
  description.Replace("|", " ");
  return description + " (" + pattern + ")|" + pattern;
}

bool MayReplace(const wxString& path, wxWindow* parent, const wxString& title) {
  const std::u16string question = qelcore::ReplacePlaceholders(
      qelcore::Localise("$$$/qel/host/ui/kReplaceFileText=A file named \"@0\" already exists. Replace it?"),
      {FromWx(wxFileName(path).GetFullName())});
  wxMessageDialog dialog(parent, ToWx(question), title, wxYES_NO | wxNO_DEFAULT | wxICON_WARNING);
  return dialog.ShowModal() == wxID_YES;
}

}  // namespace

int NativeDrawSupplier::MeasureButton(const std::u16string& caption) {
  wxDialog dialog(nullptr, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxDIALOG_NO_PARENT);
  return MakeNativeButton(dialog, ButtonLook::kPush, ToWx(caption))->GetBestSize().GetWidth();
}

std::unique_ptr<DialogWindow> NativeDrawSupplier::MakeDialogWindow(OS_Window* parent) {
  return std::make_unique<NativeDialog>(parent);
}

void NativeNodeManager::ShowErrorMessage(const std::u16string& title, const std::u16string& message,
                                         OS_Window* parent) {
  const ModalLevel level;
  wxMessageDialog(ToNative(parent), ToWx(message), ToWx(title), wxOK | wxICON_ERROR).ShowModal();
}

std::u16string NativeNodeManager::RunSaveAsDialog(const OS_FileSaveAsDialog& dialog, DialogWindow* parent) {
  const ModalLevel level;
  auto* const owner = dynamic_cast<NativeDialog*>(parent);
  wxWindow* const window = owner != nullptr ? &owner->GetWindow() : nullptr;
  const wxString title = ToWx(dialog.GetTitle());
  const wxString extension = ToWx(dialog.GetFileType().mExtension);
  wxString directory = ToWx(dialog.GetStartDirectory());
  wxString name = ToWx(dialog.GetDefaultName());
  for (;;) {
    wxFileDialog native(window, title, directory, name, FilterFor(dialog.GetFileType()),
                        wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (native.ShowModal() != wxID_OK) return {};
    wxFileName file(native.GetPath());
    if (file.HasExt() || extension.empty()) return FromWx(file.GetFullPath());
    file.SetExt(extension);
    // The system asked about the name that was typed, which is another one.
    if (!file.Exists() || MayReplace(file.GetFullPath(), window, title)) return FromWx(file.GetFullPath());
    directory = file.GetPath();
    name = file.GetFullName();
  }
}

}  // namespace qelui::native
