#include "ui/ProgressForm.h"

#include "ui/AbsentForm.h"

namespace varnel {

namespace {

std::unique_ptr<ProgressForm>& Face() {
    static std::unique_ptr<ProgressForm> face = std::make_unique<AbsentForm>();
    return face;
}

}  // namespace

ProgressForm& Form14() {
    return *Face();
}

void UseProgressForm(std::unique_ptr<ProgressForm> face) {
    Face() = face ? std::move(face) : std::make_unique<AbsentForm>();
}

void AppendWindowLine(std::string_view text) {
    ProgressForm& form = Form14();
    form.AppendLogTxt("\r\n");
    form.AppendLogTxt(text);
    form.ScrollLogTxt();
}

}  // namespace varnel
