#pragma once

class QString;

/// Has generateDiagnostic.sh, found through the search path, write an archive to the path and waits for it.
/// Whether it exited with 0 within ten seconds; if it did not exit, it is killed. The path is not quoted:
/// blanks part it into several arguments, and text in double quotes stays together.
bool writeDiagnosticArchive(const QString &path);
