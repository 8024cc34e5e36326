#pragma once

/// An item view with a header that arranges its header and scroll bars only while it is shown; when the
/// header is shown, Qt has its view arranged. For a view on a tab that nobody may open, what Qt does at every
/// change of the content is spared: the header's bold font is loaded and the captions are measured in it.
template <typename View>
class ArrangedWhenShown : public View {
public:
    using View::View;

protected:
    void updateGeometries() override
    {
        if (this->isVisible())
            View::updateGeometries();
    }
};
