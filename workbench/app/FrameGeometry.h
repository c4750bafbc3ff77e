#pragma once

#include <windows.h>

namespace workbench {

/// The sizes in pixels that the frame's layout depends on, at the window's resolution.
struct FrameMetrics {
  int margin;           ///< around the panes
  int heading_height;   ///< of the line of text above each list
  int splitter_height;  ///< of the bar between the panes, and the width of that between the columns
  int least_list_height;
  int least_lists_width;     ///< of the column with the two lists
  int least_schedule_width;  ///< of the column with the schedule
  int status_height;         ///< of the status bar
};

/// Where the parts of the frame's client area lie. No rectangle is inside out, however small the client area.
struct FrameLayout {
  RECT rules_heading;
  RECT rules;
  RECT splitter;
  RECT settings_heading;
  RECT settings;
  RECT column_splitter;
  RECT schedule;
};

/// How the user divided the client area, from 0 to 1.
struct FrameSplits {
  double rows = 0.6;      ///< the share of the lists' height that the upper one gets
  double columns = 0.46;  ///< the share of the width that the lists get
};

/// The metrics at this resolution. `dpi` is 96 for 100 %.
FrameMetrics frame_metrics(int dpi, int status_height);

/// The smallest client area in which everything keeps its least size.
SIZE least_client_size(const FrameMetrics& metrics);

/// Lays out a client area of this size: the two lists on the left, the schedule on the right. All keep their least
/// sizes where there is room for them.
FrameLayout lay_out_frame(SIZE client, const FrameSplits& splits, const FrameMetrics& metrics);

/// A rectangle of this size, or of the area's size where that is smaller, in the middle of the area.
RECT centered(const RECT& area, SIZE size);

/// The share that puts the left edge of the splitter between the columns here, in the same way.
double column_split_for(int splitter_left, SIZE client, const FrameMetrics& metrics);

/// The share that puts the splitter's top at this height above the client area's top, the inverse of `lay_out_frame`.
double split_for(int splitter_top, SIZE client, const FrameMetrics& metrics);

/// The right edges of the status bar's parts (message, number of rules, store) in a bar of this width; the last is -1,
/// which means the bar's own edge.
struct StatusEdges {
  int edges[3];
};
StatusEdges status_edges(int width, int dpi);

}  // namespace workbench
