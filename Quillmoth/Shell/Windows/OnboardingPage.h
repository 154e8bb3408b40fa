#pragma once

#include <QList>
#include <QMargins>
#include <QSize>
#include <QString>
#include <QWidget>

class QBoxLayout;

namespace quillmoth {

/// What the pages of the onboarding have in common.
namespace onboarding {

constexpr QSize kWindow(680, 580);
/// Around what the window holds.
constexpr QMargins kPadding(40, 56, 40, 44);
/// At the sides of the buttons.
constexpr int kContinuePadding = 90;
/// Stands for no image.
constexpr QLatin1String kNoImage("car");

} // namespace onboarding

/// A symbol in indigo.
class SymbolView final : public QWidget {
public:
    SymbolView(const QString& name, int size);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString name_;
    int size_;
};

/// A row: a symbol, and to its side a title over a text, which is broken where it finds no room.
class InformationDetailView final : public QWidget {
public:
    InformationDetailView(const QString& title, const QString& subTitle, const QString& imageName);
};

/// A row of the page of keys. The first image is always drawn.
class InformationDetailView2 final : public QWidget {
public:
    InformationDetailView2(const QString& title, const QString& subTitle, const QString& imageName,
                           const QString& imageName2, const QString& imageName3);
};

/// A page of two lines of headline, the second in indigo, over rows.
[[nodiscard]] QWidget* makeOnboardingPage(const QString& first, const QString& second,
                                          const QList<QWidget*>& rows);

} // namespace quillmoth
