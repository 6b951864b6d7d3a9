#include "host/FileStreamDialog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QPointer>
#include <QStandardPaths>

#include <utility>

namespace Corvanta::Host {
namespace {

constexpr int kWidth = 600;
constexpr int kHeight = 400;

}  // namespace

FileStreamDialog::FileStreamDialog(QWidget* parent, const StreamChoice& choice, StreamDialog::Start start)
    : QFileDialog(parent), start_(std::move(start)) {
    // The desktop's own chooser closes by itself, and has no place for a line of ours.
    setOption(QFileDialog::DontUseNativeDialog);
    setFileMode(QFileDialog::ExistingFile);
    setWindowTitle(QString::fromUtf8(choice.title.data(), static_cast<qsizetype>(choice.title.size())));
    setLabelText(QFileDialog::Accept, QStringLiteral("&Share"));
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    setDirectory(QFileInfo(videos).isDir() ? videos : QDir::homePath());
    message_.setTextFormat(Qt::PlainText);
    message_.setWordWrap(true);
    message_.hide();
    if (auto* const grid = qobject_cast<QGridLayout*>(layout())) {
        grid->addWidget(&message_, grid->rowCount(), 0, 1, grid->columnCount());
    }
    resize(kWidth, kHeight);
}

void FileStreamDialog::accept() {
    if (waiting_) return;
    const QStringList files = selectedFiles();
    const QFileInfo chosen(files.isEmpty() ? QString() : files.first());
    if (chosen.isDir()) {
        QFileDialog::accept();  // which goes into the folder
        return;
    }
    waiting_ = true;
    message_.setText(QStringLiteral("Starting..."));
    message_.show();
    start_({QFile::encodeName(chosen.filePath()).toStdString(), chosen.fileName()},
           [self = QPointer(this)](const std::optional<std::string>& failure) {
               if (self) self->Answer(failure);
           });
}

void FileStreamDialog::Answer(const std::optional<std::string>& failure) {
    waiting_ = false;
    if (failure) {
        message_.setText(QString::fromStdString(*failure));
    } else {
        done(QDialog::Accepted);
    }
}

}  // namespace Corvanta::Host
