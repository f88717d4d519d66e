#include "host/qelui/native/System.h"

#include <gtk/gtk.h>
#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/dataview.h>

#include <clocale>

#include "platform/qelcore/Trace.h"

namespace qelui::native {

namespace {

constexpr const char* kChannel = "Toolkit";

/// Whether messages go to the trace. The writer itself can be set only once in a process.
bool gTracesMessages = false;

GLogWriterOutput WriteMessage(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer data) {
  // What ends the process has to be seen.
  if (!gTracesMessages || (level & (G_LOG_FLAG_FATAL | G_LOG_LEVEL_ERROR)) != 0)
    return g_log_writer_default(level, fields, count, data);
  const int traceLevel = (level & G_LOG_LEVEL_CRITICAL) != 0 ? 1 : 5;
  if (qelcore::TraceEnabled(kChannel, traceLevel)) {
    gchar* const text = g_log_writer_format_fields(level, fields, count, FALSE);
    qelcore::TraceOutput(kChannel, traceLevel, text);
    g_free(text);
  }
  return G_LOG_WRITER_HANDLED;
}

}  // namespace

SystemMessages::SystemMessages() {
  static const bool isWriterSet = [] {
    g_log_set_writer_func(WriteMessage, nullptr, nullptr);
    return true;
  }();
  gTracesMessages = isWriterSet;
}

SystemMessages::~SystemMessages() {
  gTracesMessages = false;
}

void PrepareSystem() {
  std::setlocale(LC_CTYPE, "");
  std::setlocale(LC_MESSAGES, "");
}

void SetDefaultDirection(bool isRightToLeft) {
  gtk_widget_set_default_direction(isRightToLeft ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR);
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

// wxWidgets' own way remembers the row until it is idle, when the row may be gone.
void ScrollToTop(wxDataViewCtrl& tree) {
  GtkWidget* const view = gtk_bin_get_child(GTK_BIN(tree.GetHandle()));
  GtkTreePath* const first = gtk_tree_path_new_first();
  GtkTreeIter row;
  if (gtk_tree_model_get_iter(gtk_tree_view_get_model(GTK_TREE_VIEW(view)), &row, first) != FALSE)
    gtk_tree_view_scroll_to_cell(GTK_TREE_VIEW(view), first, nullptr, TRUE, 0, 0);
  gtk_tree_path_free(first);
}

void ClearHiddenCheckMarks(wxDataViewColumn& column) {
  // The one renderer of the column keeps the mark of the cell before when it is hidden for a cell.
  const auto clear = +[](GObject* renderer, GParamSpec* /*property*/, gpointer /*data*/) {
    if (gtk_cell_renderer_get_visible(GTK_CELL_RENDERER(renderer)) == FALSE)
      gtk_cell_renderer_toggle_set_active(GTK_CELL_RENDERER_TOGGLE(renderer), FALSE);
  };
  g_signal_connect(column.GetRenderer()->GetGtkHandle(), "notify::visible", G_CALLBACK(clear), nullptr);
}

void SetCheckBoxName(wxDataViewCtrl& tree, int row, const wxString& name) {
  GtkWidget* const view = gtk_bin_get_child(GTK_BIN(tree.GetHandle()));
  // The table keeps its cells as long as their rows are there.
  AtkObject* const cell = atk_table_ref_at(ATK_TABLE(gtk_widget_get_accessible(view)), row, 0);
  if (cell == nullptr) return;
  atk_object_set_name(cell, name.utf8_str());
  g_object_unref(cell);
}

wxImage GetMessagePicture(IconKind kind) {
  // Asked for a larger size, themes give a small picture with a wide edge.
  return wxArtProvider::GetBitmap(kind == IconKind::kWarning ? wxART_WARNING : wxART_ERROR, wxART_MESSAGE_BOX)
      .ConvertToImage();
}

void* GetSystemHandle(wxWindow& /*window*/) {
  return nullptr;
}

}  // namespace qelui::native
