// The same functions and types for import; the default is the native exports object itself.
export * from './index.js';

declare const deskhand: typeof import('./index.js');
export default deskhand;
