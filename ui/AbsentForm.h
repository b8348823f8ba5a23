// The face of a run without a window: everything said to it is dropped.
#pragma once

#include "ui/ProgressForm.h"

namespace varnel {

class AbsentForm : public ProgressForm {
public:
    void SetCaption(std::string_view) override {}
    void SetSrcDestLabel(std::string_view) override {}
    void ReplaceLogTxt(std::string_view) override {}
    void AppendLogTxt(std::string_view) override {}
    void ScrollLogTxt() override {}
    void RefreshLogTxt() override {}
    void SetLabel2(std::string_view) override {}
    void RefreshLabel2() override {}
    void SetRowProMin(float) override {}
    void SetRowProMax(float) override {}
    void SetRowProValue(float) override {}
    void DoEvents() override {}
    bool ConfirmCancel() override { return true; }
    void StayUntilClosed() override {}
};

}  // namespace varnel
