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

// The families that the library draws texts in.
constexpr std::array kFamilies{"Arial",           "Arial Black",
                               "Arial Narrow",    "Arial Rounded MT Bold",
                               "Baskerville",     "Book Antiqua",
                               "Brush Script MT", "Calibri",
                               "Calisto MT",      "Candara",
                               "Century Gothic",  "Consolas",
                               "Copperplate",     "Courier New",
                               "Garamond",        "Georgia",
                               "Gill Sans",       "Goudy Old Style",
                               "Helvetica",       "Impact",
                               "Lucida Bright",   "Lucida Sans Typewriter",
                               "Palatino",        "Papyrus",
                               "Tahoma",          "Times New Roman",
                               "Trebuchet MS",    "Verdana"};
// In which families that are missing are drawn, and the one that the library takes where it is missing
// itself.
constexpr const char* kDefaultFamily = "Arial";
constexpr const char* kStandIn = "Liberation Sans";
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
        return installed.contains(QLatin1String(family));
    };
    QStringList offered;
    for (const char* const family : kFamilies) {
        const QLatin1String name(family);
        if (isInstalled(family) || (name == QLatin1String(kDefaultFamily) && isInstalled(kStandIn)))
            offered.push_back(name);
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
