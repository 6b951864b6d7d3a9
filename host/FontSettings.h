// The font of the drawing tool's texts: family, size, bold and italic. Main thread only.
#pragma once

#include <QComboBox>
#include <QStringList>
#include <QWidget>

#include <functional>

#include "host/DrawToolRecord.h"
#include "host/PaletteButton.h"

namespace Corvanta::Host {

// The families of texts that are worth offering where these are installed.
[[nodiscard]] QStringList FamiliesToOffer(const QStringList& installed);

class FontSettings final : public QWidget {
public:
    // Changes the record, which must outlive this object, and then calls onChanged.
    FontSettings(QWidget* parent, DrawToolRecord& record, std::function<void()> onChanged);

    // Takes over what the record says.
    void Refresh();

private:
    DrawToolRecord& record_;
    const std::function<void()> onChanged_;
    // Children of this widget.
    QComboBox* family_ = nullptr;
    QComboBox* size_ = nullptr;
    PaletteButton* bold_ = nullptr;
    PaletteButton* italic_ = nullptr;
};

}  // namespace Corvanta::Host
