#include "host/FontSettings.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QSignalBlocker>

#include <array>
#include <utility>

namespace Corvanta::Host {
namespace {

constexpr int kSpace = 4;
constexpr int kFamilyWidth = 140;
constexpr int kSizeWidth = 62;
constexpr double kLargestSize = 1000.0;

struct Family {
    const char* name;
    // The free family of the same widths, in which the library draws it where it is missing; null without
    // one.
    const char* standIn = nullptr;
};

// The families that the library draws texts in.
constexpr std::array kFamilies{Family{"Arial", "Liberation Sans"},
                               Family{"Arial Black"},
                               Family{"Arial Narrow", "Liberation Sans Narrow"},
                               Family{"Arial Rounded MT Bold"},
                               Family{"Baskerville"},
                               Family{"Book Antiqua"},
                               Family{"Brush Script MT"},
                               Family{"Calibri", "Carlito"},
                               Family{"Calisto MT"},
                               Family{"Candara"},
                               Family{"Century Gothic"},
                               Family{"Consolas"},
                               Family{"Copperplate"},
                               Family{"Courier New", "Liberation Mono"},
                               Family{"Garamond"},
                               Family{"Georgia", "Gelasio"},
                               Family{"Gill Sans"},
                               Family{"Goudy Old Style"},
                               Family{"Helvetica", "Liberation Sans"},
                               Family{"Impact"},
                               Family{"Lucida Bright"},
                               Family{"Lucida Sans Typewriter"},
                               Family{"Palatino"},
                               Family{"Papyrus"},
                               Family{"Tahoma"},
                               Family{"Times New Roman", "Liberation Serif"},
                               Family{"Trebuchet MS"},
                               Family{"Verdana"}};
// Always offered: a new user has it, and families that are missing are drawn in it.
constexpr const char* kDefaultFamily = "Arial";
constexpr std::array kSizes{12, 16, 20, 24, 28, 32, 40, 48, 64, 80, 96, 128};

// Chooses the entry of that text, which is added if it is missing.
void Select(QComboBox& box, const QString& text, const QVariant& data) {
    const QSignalBlocker quiet(&box);
    int index = box.findText(text);
    if (index < 0) {
        box.addItem(text, data);
        index = box.count() - 1;
    }
    box.setCurrentIndex(index);
}

QComboBox* MakeBox(QWidget* parent, const QString& name, int width) {
    auto* const box = new QComboBox(parent);
    box->setFocusPolicy(Qt::TabFocus);
    box->setFixedWidth(width);
    box->setAccessibleName(name);
    box->setToolTip(name);
    return box;
}

}  // namespace

QStringList FamiliesToOffer(const QStringList& installed) {
    const auto isInstalled = [&installed](const char* family) {
        return family != nullptr && installed.contains(QLatin1String(family));
    };
    QStringList offered;
    for (const Family& family : kFamilies) {
        const QString name = QString::fromLatin1(family.name);
        if (name == QLatin1String(kDefaultFamily) || isInstalled(family.name) ||
            isInstalled(family.standIn)) {
            offered.push_back(name);
        }
    }
    return offered;
}

FontSettings::FontSettings(QWidget* parent, DrawToolRecord& record, std::function<void()> onChanged)
    : QWidget(parent), record_(record), onChanged_(std::move(onChanged)) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(kSpace);
    family_ = MakeBox(this, QStringLiteral("Font"), kFamilyWidth);
    family_->addItems(FamiliesToOffer(QFontDatabase::families()));
    row->addWidget(family_);
    size_ = MakeBox(this, QStringLiteral("Font size"), kSizeWidth);
    for (const int size : kSizes) size_->addItem(QString::number(size), static_cast<double>(size));
    row->addWidget(size_);
    bold_ = new PaletteButton(this, "icons/draw-bold.png", QStringLiteral("Bold"));
    italic_ = new PaletteButton(this, "icons/draw-italic.png", QStringLiteral("Italic"));
    for (PaletteButton* const button : {bold_, italic_}) {
        button->setCheckable(true);
        row->addWidget(button);
    }
    QObject::connect(family_, &QComboBox::currentTextChanged, this, [this](const QString& family) {
        record_.SetFontFamily(family.toStdString());
        onChanged_();
    });
    QObject::connect(size_, &QComboBox::currentIndexChanged, this, [this](int index) {
        record_.SetFontSize(size_->itemData(index).toDouble());
        onChanged_();
    });
    QObject::connect(bold_, &QToolButton::toggled, this, [this](bool on) {
        record_.SetBold(on);
        onChanged_();
    });
    QObject::connect(italic_, &QToolButton::toggled, this, [this](bool on) {
        record_.SetItalic(on);
        onChanged_();
    });
}

void FontSettings::Refresh() {
    Select(*family_, QString::fromStdString(record_.FontFamily()), {});
    const double size = record_.State().fontSize;
    // What is no size stays what it is in the record, and nothing is chosen here.
    if (size > 0.0 && size <= kLargestSize) {
        Select(*size_, QString::number(size), size);
    } else {
        const QSignalBlocker quiet(size_);
        size_->setCurrentIndex(-1);
    }
    const QSignalBlocker quietBold(bold_);
    const QSignalBlocker quietItalic(italic_);
    bold_->setChecked(record_.State().useBoldFont);
    italic_->setChecked(record_.State().useItalicizedFont);
}

}  // namespace Corvanta::Host
