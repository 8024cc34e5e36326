#pragma once

class QString;

/// The text of the application's style sheet, ASCII, from the resource :/qss/default.qss.
QString applicationStyleSheet();
