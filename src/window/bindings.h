#pragma once

#include "app/controls.h"
#include "window/frame_refresh.h"

#include <memory>

class QAbstractButton;
class QCheckBox;
class QLabel;
class QProgressBar;

namespace kestrova {

class ValueComboBox;

/// How the window words a control's text; it stands as it is when absent.
using Wording = QString (*)(const QString& text);

/// Each function binds one widget to one control: the widget shows the control's values, and what the user
/// does to the widget is done to the control. The widget must live as long as the FrameRefresh. Main thread
/// only.
void bindTextField(FrameRefresh& refresh, const std::shared_ptr<TextField>& field, QLabel& label,
                   Wording wording = nullptr);
void bindButton(FrameRefresh& refresh, const std::shared_ptr<Button>& button, QAbstractButton& widget);
void bindCheckBox(FrameRefresh& refresh, const std::shared_ptr<CheckBox>& box, QCheckBox& widget);
void bindComboBox(FrameRefresh& refresh, const std::shared_ptr<ComboBox>& combo, ValueComboBox& widget);
void bindProgressBar(FrameRefresh& refresh, const std::shared_ptr<ProgressIndicator>& progress,
                     QProgressBar& widget);

}  // namespace kestrova
