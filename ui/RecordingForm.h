// A face that keeps what was said to it, for tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/ProgressForm.h"

namespace varnel {

class RecordingForm : public ProgressForm {
public:
    std::string caption;
    std::string srcDestLabel;
    std::string logTxt;
    std::vector<std::string> label2;  ///< every caption that Label2 was given, in order
    std::vector<float> rowPro;        ///< every value that RowPro was given, clamped to the maximum
    float rowProMin = 0;
    float rowProMax = 100;
    int scrolls = 0;
    int logTxtRefreshes = 0;
    int label2Refreshes = 0;
    int events = 0;                  ///< how often the run let the window handle its events
    std::function<void()> onEvents;  ///< called there: a click, say

    void SetCaption(std::string_view text) override { caption = text; }
    void SetSrcDestLabel(std::string_view text) override { srcDestLabel = text; }
    void ReplaceLogTxt(std::string_view text) override { logTxt = text; }
    void AppendLogTxt(std::string_view text) override { logTxt += text; }
    void ScrollLogTxt() override { ++scrolls; }
    void RefreshLogTxt() override { ++logTxtRefreshes; }
    void SetLabel2(std::string_view text) override { label2.emplace_back(text); }
    void RefreshLabel2() override { ++label2Refreshes; }
    void SetRowProMin(float value) override { rowProMin = value; }
    void SetRowProMax(float value) override { rowProMax = value; }
    void SetRowProValue(float value) override { rowPro.push_back(value > rowProMax ? rowProMax : value); }
    void DoEvents() override {
        ++events;
        if (onEvents) onEvents();
    }
    bool ConfirmCancel() override { return true; }
    void StayUntilClosed() override {}
};

}  // namespace varnel
