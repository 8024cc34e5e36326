#pragma once

#include <thread>

/// Has fontconfig read its configuration, dozens of XML files, on a thread of its own, so that Qt finds it
/// read when it loads the first font. To be made before the QApplication, whose construction leaves one
/// processor core idle for that time, and to be gone before the first font is needed, or Qt would read the
/// same again.
class FontsAhead {
public:
    /// Also sets the locale that the environment asks for, because fontconfig reads both while they must not
    /// change; the QApplication then sets the same once more, and on Qt 6 a UTF-8 one for characters where
    /// that has none, which fontconfig does not look at. From then on all threads share one heap. Does
    /// nothing where Qt is going to change the environment; without a thread, too, the configuration is read
    /// when Qt needs it.
    FontsAhead();
    /// Returns when the configuration is read.
    ~FontsAhead();
    FontsAhead(const FontsAhead &) = delete;
    FontsAhead &operator=(const FontsAhead &) = delete;

private:
    std::thread m_reader;
};
