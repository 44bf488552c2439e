// Preact with htm's templates instead of JSX: no build step. All values are shown as text.

import { h } from 'preact';
import htm from 'htm';

export const html = htm.bind(h);
export { render } from 'preact';
export { useEffect, useLayoutEffect, useRef, useState } from 'preact/hooks';
