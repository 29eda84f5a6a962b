#include "MenubarApp/AppKit/runApplication.h"

int main() {
    return menubar::runApplication();
}
