// The one application object that all cases share.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QDir().mkpath(VARNEL_PICTURES);
    return RUN_ALL_TESTS();
}
