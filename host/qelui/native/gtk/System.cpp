#include "host/qelui/native/System.h"

#include <gtk/gtk.h>
#include <wx/button.h>

#include <clocale>
#include <string>

#include "platform/qelcore/Trace.h"

namespace qelui::native {

namespace {

constexpr const char* kChannel = "Toolkit";

GLogFunc gPreviousHandler = nullptr;

void TraceMessage(const gchar* domain, GLogLevelFlags level, const gchar* message, gpointer data) {
  // What ends the process has to be seen.
  if ((level & G_LOG_FLAG_FATAL) != 0 && gPreviousHandler != nullptr)
    gPreviousHandler(domain, level, message, data);
  const int traceLevel = (level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL)) != 0 ? 1 : 5;
  if (!qelcore::TraceEnabled(kChannel, traceLevel)) return;
  const std::string text =
      (domain != nullptr ? std::string(domain) + ": " : std::string()) + (message != nullptr ? message : "");
  qelcore::TraceOutput(kChannel, traceLevel, text);
}

}  // namespace

SystemMessages::SystemMessages() {
  gPreviousHandler = g_log_set_default_handler(TraceMessage, nullptr);
}

SystemMessages::~SystemMessages() {
  g_log_set_default_handler(gPreviousHandler, nullptr);
}

void PrepareSystem() {
  std::setlocale(LC_CTYPE, "");
  std::setlocale(LC_MESSAGES, "");
}

void SetAccessibleName(wxWindow& window, const wxString& name) {
  GtkWidget* widget = window.GetHandle();
  if (GTK_IS_SCROLLED_WINDOW(widget)) {
    // What scrolls by itself is meant, not the frame with its scroll bars.
    GtkWidget* const inner = gtk_bin_get_child(GTK_BIN(widget));
    if (GTK_IS_TREE_VIEW(inner) || GTK_IS_TEXT_VIEW(inner)) widget = inner;
  }
  atk_object_set_name(gtk_widget_get_accessible(widget), name.utf8_str());
}

void MarkAsDialog(wxWindow& window) {
  atk_object_set_role(gtk_widget_get_accessible(window.GetHandle()), ATK_ROLE_DIALOG);
}

void MakeLookLikeLink(wxButton& button) {
  GtkWidget* const widget = button.GetHandle();
  gtk_style_context_add_class(gtk_widget_get_style_context(widget), "link");
  gtk_widget_set_state_flags(widget, GTK_STATE_FLAG_LINK, FALSE);
}

void ShowScrollBarsAlways(wxWindow& window) {
  GtkWidget* const widget = window.GetHandle();
  if (GTK_IS_SCROLLED_WINDOW(widget))
    gtk_scrolled_window_set_overlay_scrolling(GTK_SCROLLED_WINDOW(widget), FALSE);
}

void* GetSystemHandle(wxWindow& /*window*/) {
  return nullptr;
}

}  // namespace qelui::native
