#include <gtk/gtk.h>
#include <wx/nativewin.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "host/qelui/native/Measures.h"
#include "host/qelui/native/System.h"

namespace qelui::native {

namespace {

struct Unreference {
  void operator()(PangoLayout* layout) const { g_object_unref(layout); }
  void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
};
using Layout = std::unique_ptr<PangoLayout, Unreference>;
using Attributes = std::unique_ptr<PangoAttrList, Unreference>;

void AskForNothing(GtkWidget* /*widget*/, gint* least, gint* natural) {
  *least = 0;
  *natural = 0;
}

void AskForNothingAt(GtkWidget* /*widget*/, gint /*length*/, gint* least, gint* natural) {
  *least = 0;
  *natural = 0;
}

void InitialiseClass(gpointer labelClass, gpointer /*data*/) {
  GtkWidgetClass* const widget = GTK_WIDGET_CLASS(labelClass);
  widget->get_preferred_width = AskForNothing;
  widget->get_preferred_height = AskForNothing;
  widget->get_preferred_width_for_height = AskForNothingAt;
  widget->get_preferred_height_for_width = AskForNothingAt;
}

/// A label that does not measure itself whenever anything around it changes, which takes longer than a second
/// for hundreds of labels: its place is measured and given from outside.
GType QuietLabelType() {
  static const GType type =
      g_type_register_static_simple(GTK_TYPE_LABEL, "QelQuietLabel", sizeof(GtkLabelClass), InitialiseClass,
                                    sizeof(GtkLabel), nullptr, GTypeFlags{});
  return type;
}

GtkLabel* MakeLabel() {
  gpointer const label = g_object_new(QuietLabelType(), nullptr);
  // The window takes a reference over.
  g_object_ref_sink(label);
  return GTK_LABEL(label);
}

guint16 ColorPart(double fraction) {
  return static_cast<guint16>(std::lround(std::clamp(fraction, 0.0, 1.0) * 65535));
}

class LabelText final : public SelectableText {
 public:
  explicit LabelText(wxWindow& parent)
      : mLabel(MakeLabel()), mWindow(new wxNativeWindow(&parent, wxID_ANY, GTK_WIDGET(mLabel))) {
    gtk_label_set_line_wrap(mLabel, TRUE);
    gtk_label_set_line_wrap_mode(mLabel, PANGO_WRAP_WORD_CHAR);
    gtk_label_set_xalign(mLabel, 0);
    gtk_label_set_yalign(mLabel, 0);
    gtk_label_set_selectable(mLabel, TRUE);
  }

  wxWindow& GetWindow() override { return *mWindow; }

  void SetText(const wxString& text) override {
    gtk_label_set_text(mLabel, text.utf8_str());
    mUnwrapped.reset();
  }

  void SetColor(const Color& color) override {
    mColor = color;
    mHasColor = true;
    SetAttributes();
  }

  void SetFontStyle(FontStyle style) override {
    mStyle = style;
    SetAttributes();
  }

  int MeasureWidth() override { return Unwrapped().GetWidth(); }

  // Most texts are short, and need not be measured once more.
  int MeasureHeight(int width) override {
    if (width >= Unwrapped().GetWidth()) return Unwrapped().GetHeight();
    const Layout layout = MakeLayout();
    pango_layout_set_width(layout.get(), std::max(0, width) * PANGO_SCALE);
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    int height = 0;
    pango_layout_get_pixel_size(layout.get(), nullptr, &height);
    return height;
  }

  bool HasSelection() override { return gtk_label_get_selection_bounds(mLabel, nullptr, nullptr) != FALSE; }

 private:
  /// The size of the text on one line for each of its paragraphs.
  [[nodiscard]] const wxSize& Unwrapped() {
    if (!mUnwrapped) {
      const Layout layout = MakeLayout();
      int width = 0;
      int height = 0;
      pango_layout_get_pixel_size(layout.get(), &width, &height);
      mUnwrapped.emplace(width, height);
    }
    return *mUnwrapped;
  }

  // Attributes are relative to the system's font and follow when it changes.
  void SetAttributes() {
    const Attributes attributes(pango_attr_list_new());
    const auto add = [&](PangoAttribute* attribute) { pango_attr_list_insert(attributes.get(), attribute); };
    if (mStyle != FontStyle::kPlain) add(pango_attr_weight_new(PANGO_WEIGHT_BOLD));
    if (mStyle == FontStyle::kTitle) add(pango_attr_scale_new(kTitleScale));
    if (mHasColor) {
      add(pango_attr_foreground_new(ColorPart(mColor.mRed), ColorPart(mColor.mGreen),
                                    ColorPart(mColor.mBlue)));
      add(pango_attr_foreground_alpha_new(ColorPart(mColor.mOpacity)));
    }
    gtk_label_set_attributes(mLabel, attributes.get());
    mUnwrapped.reset();
  }

  /// The text on a line of its own for each paragraph, as the label draws it.
  [[nodiscard]] Layout MakeLayout() const {
    Layout layout(gtk_widget_create_pango_layout(GTK_WIDGET(mLabel), gtk_label_get_text(mLabel)));
    pango_layout_set_attributes(layout.get(), gtk_label_get_attributes(mLabel));
    return layout;
  }

  GtkLabel* mLabel;
  wxNativeWindow* mWindow;
  FontStyle mStyle = FontStyle::kPlain;
  bool mHasColor = false;
  Color mColor;
  std::optional<wxSize> mUnwrapped;
};

}  // namespace

std::unique_ptr<SelectableText> MakeSelectableText(wxWindow& parent) {
  return std::make_unique<LabelText>(parent);
}

}  // namespace qelui::native
