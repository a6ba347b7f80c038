#include "blockview.h"

// Being built.
BlockView::BlockView(QWidget* parent) : QAbstractScrollArea(parent) {}
BlockView::~BlockView() = default;
void BlockView::selectAll() {}
void BlockView::copy() {}
