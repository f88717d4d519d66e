// How soon the report dialog is there, how its rows come, and how it scrolls. To be run on a display of its
// own:
//
//   dialog FOLDER MACHINE
//
// asks for the report of a recorded machine, with the list in FOLDER/SystemCompatibilityReport, as a host's
// Help menu does; each component of the machine must have a row. When all rows are there it scrolls through
// them, a page a frame. It prints a line for each measure, a word and two times in milliseconds, those of the
// clock and of the processor:
//
//   first     from the request to the end of the frame that shows the dialog first
//   stall     the longest time, while rows still come, in which the dialog hears of nothing
//   filled    from the request to the end of the frame that shows it with all rows
//   scrolled  one for each frame of scrolling
//   closed    from the close button to the end of the request
#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "benchmarks/Machine.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelui/HostSetup.h"
#include "qelsystemcompatibilityreport/SystemCompatibilityReport.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Milliseconds of the clock and of the processor.
struct Time {
  double mWall = 0;
  double mProcessor = 0;
};

void Print(const char* what, const Time& time) {
  std::printf("%s %.2f %.2f\n", what, time.mWall, time.mProcessor);
}

class StopWatch {
 public:
  [[nodiscard]] Time Read() const {
    const std::chrono::duration<double, std::milli> wall = Clock::now() - mBegin;
    return {wall.count(), 1000.0 * static_cast<double>(std::clock() - mProcessorBegin) / CLOCKS_PER_SEC};
  }

 private:
  Clock::time_point mBegin = Clock::now();
  std::clock_t mProcessorBegin = std::clock();
};

/// Measures what happens between two times that the main loop looks for events.
class LoopWatch {
 public:
  LoopWatch() : mPoll(g_main_context_get_poll_func(nullptr)) {
    sCurrent = this;
    g_main_context_set_poll_func(nullptr, Poll);
  }
  ~LoopWatch() {
    g_main_context_set_poll_func(nullptr, mPoll);
    sCurrent = nullptr;
  }
  LoopWatch(const LoopWatch&) = delete;
  LoopWatch& operator=(const LoopWatch&) = delete;

  void Reset() { mLongest = {}; }
  [[nodiscard]] const Time& Longest() const { return mLongest; }

 private:
  static gint Poll(GPollFD* descriptors, guint count, gint timeout) {
    LoopWatch& self = *sCurrent;
    const Time busy = self.mSincePoll.Read();
    self.mLongest.mWall = std::max(self.mLongest.mWall, busy.mWall);
    self.mLongest.mProcessor = std::max(self.mLongest.mProcessor, busy.mProcessor);
    const gint result = self.mPoll(descriptors, count, timeout);
    self.mSincePoll = {};
    return result;
  }

  static inline LoopWatch* sCurrent = nullptr;
  GPollFunc mPoll;
  StopWatch mSincePoll;
  Time mLongest;
};

/// The longest scrolled window below a widget.
GtkWidget* FindScrolled(GtkWidget* widget) {
  GtkWidget* found = GTK_IS_SCROLLED_WINDOW(widget) ? widget : nullptr;
  if (!GTK_IS_CONTAINER(widget)) return found;
  const auto length = [](GtkWidget* scrolled) {
    return gtk_adjustment_get_upper(gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled)));
  };
  GList* const children = gtk_container_get_children(GTK_CONTAINER(widget));
  for (const GList* child = children; child != nullptr; child = child->next) {
    GtkWidget* const inner = FindScrolled(GTK_WIDGET(child->data));
    if (inner != nullptr && (found == nullptr || length(inner) > length(found))) found = inner;
  }
  g_list_free(children);
  return found;
}

/// Follows the frames of the first window that is drawn, which is the dialog, until it has all rows, and then
/// scrolls it.
class Frames {
 public:
  explicit Frames(std::size_t rowCount) : mMissingRows(rowCount) {
    g_type_class_unref(g_type_class_ref(GTK_TYPE_WIDGET));
    g_signal_add_emission_hook(g_signal_lookup("draw", GTK_TYPE_WIDGET), 0, OnDraw, this, nullptr);
    g_signal_add_emission_hook(g_signal_lookup("map", GTK_TYPE_WIDGET), 0, OnMap, this, nullptr);
  }
  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;

  [[nodiscard]] bool HaveEnded() const { return mHaveEnded; }
  [[nodiscard]] Time SinceClose() const { return mSinceClose.Read(); }

 private:
  static gboolean OnDraw(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values,
                         gpointer self) {
    GtkWidget* const window = gtk_widget_get_toplevel(GTK_WIDGET(g_value_get_object(values)));
    if (!GTK_IS_WINDOW(window)) return TRUE;
    static_cast<Frames*>(self)->mWindow = window;
    g_signal_connect(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(OnFrameEnd), self);
    return FALSE;
  }

  /// Each row has a button of its own.
  static gboolean OnMap(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values,
                        gpointer self) {
    gpointer const widget = g_value_get_object(values);
    if (!GTK_IS_BUTTON(widget)) return TRUE;
    const char* const label = gtk_button_get_label(GTK_BUTTON(widget));
    const std::string caption = label != nullptr ? label : "";
    if (caption.ends_with("Fix...") || caption.ends_with("Info..."))
      --static_cast<Frames*>(self)->mMissingRows;
    return static_cast<Frames*>(self)->mMissingRows != 0;
  }

  static void OnFrameEnd(GdkFrameClock* /*clock*/, gpointer self) { static_cast<Frames*>(self)->EndFrame(); }

  static gboolean OnIdle(gpointer self) {
    static_cast<Frames*>(self)->ScrollOn();
    return G_SOURCE_REMOVE;
  }

  void EndFrame() {
    if (!mIsAwaited) return;
    const bool isFirst = !std::exchange(mIsOpen, true);
    if (!isFirst && !mIsFilled && mMissingRows != 0) return;
    // What was drawn is there when the display answers.
    gdk_display_sync(gtk_widget_get_display(mWindow));
    if (isFirst) {
      Print("first", mSinceRequest.Read());
      mLoop.Reset();
      // The next frame need not come by itself.
      gtk_widget_queue_draw(mWindow);
      return;
    }
    if (mIsFilled) {
      Print("scrolled", mSinceScroll.Read());
    } else {
      mIsFilled = true;
      Print("stall", mLoop.Longest());
      Print("filled", mSinceRequest.Read());
    }
    mIsAwaited = false;
    g_idle_add(OnIdle, this);
  }

  void ScrollOn() {
    if (mScrolled == nullptr) mScrolled = FindScrolled(mWindow);
    if (mScrolled == nullptr) return Close();
    GtkAdjustment* const adjustment = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(mScrolled));
    const double page = gtk_adjustment_get_page_size(adjustment);
    const double place = gtk_adjustment_get_value(adjustment);
    const double end = gtk_adjustment_get_upper(adjustment) - page;
    if (place >= end) {
      mHaveEnded = true;
      return Close();
    }
    mIsAwaited = true;
    mSinceScroll = {};
    gtk_adjustment_set_value(adjustment, std::min(end, place + page));
  }

  void Close() {
    mSinceClose = {};
    gtk_window_close(GTK_WINDOW(mWindow));
  }

  GtkWidget* mWindow = nullptr;
  GtkWidget* mScrolled = nullptr;
  std::size_t mMissingRows;
  LoopWatch mLoop;
  StopWatch mSinceRequest;
  StopWatch mSinceScroll;
  StopWatch mSinceClose;
  bool mIsOpen = false;
  bool mIsFilled = false;
  bool mIsAwaited = true;
  bool mHaveEnded = false;
};

int Run(const std::string& folder, const std::string& machinePath) {
  qelcore::host::SetDirectories(
      {.mPreferences = folder, .mApplication = folder, .mDocuments = {}, .mState = folder});
  qelcore::host::SetApplicationLanguage("en_US");
  const auto registry = std::make_shared<const qelcore::utility::OSComponentRegistry>(
      benchmarks::MakeRegistry(benchmarks::ReadMachine(machinePath)));
  qelcore::host::SetComponentSource([&](bool) { return registry; });
  if (!qelcore::host::BeginProcess()) return 1;
  // A host has windows before anybody can ask it for a report.
  qelui::host::StartToolkit();
  bool haveEnded = false;
  {
    const Frames frames(registry->GetAllComponents().size());
    qelsystemcompatibilityreport::RunReportForHelp(u"Example", nullptr);
    haveEnded = frames.HaveEnded();
    if (haveEnded) Print("closed", frames.SinceClose());
  }
  qelui::host::StopToolkit();
  qelcore::host::EndProcess();
  return haveEnded ? 0 : 1;
}

}  // namespace

int main(int count, char** texts) {
  if (count != 3) {
    std::fputs("usage: dialog FOLDER MACHINE\n", stderr);
    return 2;
  }
  try {
    return Run(texts[1], texts[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "dialog: %s\n", error.what());
    return 1;
  }
}
